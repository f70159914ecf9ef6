#include "store/SqliteFunctions.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QVariant>
#include <sqlite3.h>

#include <algorithm>

namespace vex {

namespace {

// Byte offset of the character index ch (0-based) in UTF-8 text, clamped to len.
int Byte_Of_Char(const unsigned char* s, int len, long long ch)
{
    int b = 0;
    for (long long c = 0; c < ch && b < len; ++c) {
        ++b;
        while (b < len && (s[b] & 0xC0) == 0x80)
            ++b;
    }
    return b;
}

int Char_Count(const unsigned char* s, int len)
{
    int n = 0;
    for (int b = 0; b < len; ++b)
        if ((s[b] & 0xC0) != 0x80)
            ++n;
    return n;
}

// Characters [from, from + count) of the first argument, as text.
void Result_Slice(sqlite3_context* ctx, sqlite3_value* text, long long from, long long count)
{
    const auto* s = sqlite3_value_text(text);
    const int len = sqlite3_value_bytes(text);
    if (!s || count <= 0 || from < 0) {
        sqlite3_result_text(ctx, "", 0, SQLITE_STATIC);
        return;
    }
    const int b0 = Byte_Of_Char(s, len, from);
    const int b1 = b0 + Byte_Of_Char(s + b0, len - b0, count);
    sqlite3_result_text(ctx, reinterpret_cast<const char*>(s + b0), b1 - b0, SQLITE_TRANSIENT);
}

bool Any_Null(int argc, sqlite3_value** argv)
{
    for (int i = 0; i < argc; ++i)
        if (sqlite3_value_type(argv[i]) == SQLITE_NULL)
            return true;
    return false;
}

void Left(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (Any_Null(argc, argv))
        return sqlite3_result_null(ctx);
    Result_Slice(ctx, argv[0], 0, sqlite3_value_int64(argv[1]));
}

void Right(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (Any_Null(argc, argv))
        return sqlite3_result_null(ctx);
    const auto* s = sqlite3_value_text(argv[0]);
    const int chars = Char_Count(s, sqlite3_value_bytes(argv[0]));
    const long long n = std::min<long long>(sqlite3_value_int64(argv[1]), chars);
    Result_Slice(ctx, argv[0], chars - n, n);
}

void Mid(sqlite3_context* ctx, int argc, sqlite3_value** argv)
{
    if (Any_Null(argc, argv))
        return sqlite3_result_null(ctx);
    const long long start = sqlite3_value_int64(argv[1]); // 1-based
    const long long count = argc > 2 ? sqlite3_value_int64(argv[2]) : (1LL << 40);
    if (start < 1)
        return sqlite3_result_null(ctx);
    Result_Slice(ctx, argv[0], start - 1, count);
}

} // namespace

bool Register_Sqlite_Functions(QSqlDatabase& db)
{
    const QVariant handle = db.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return false;
    sqlite3* h = *static_cast<sqlite3* const*>(handle.constData());
    if (!h)
        return false;
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function_v2(h, "vex_left", 2, flags, nullptr, Left, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(h, "vex_right", 2, flags, nullptr, Right, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(h, "vex_mid", 2, flags, nullptr, Mid, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(h, "vex_mid", 3, flags, nullptr, Mid, nullptr, nullptr, nullptr);
    return true;
}

} // namespace vex
