#include "store/SqlDialect.h"

#include <vector>

namespace vex {

namespace {

enum class Kind { Space, Word, Literal, Symbol };

struct Token {
    Kind kind;
    QString text;
};

std::vector<Token> Tokenize(const QString& sql)
{
    std::vector<Token> out;
    const int n = sql.size();
    int i = 0;
    while (i < n) {
        const QChar c = sql[i];
        int j = i + 1;
        Kind kind = Kind::Symbol;
        if (c.isSpace()) {
            kind = Kind::Space;
            while (j < n && sql[j].isSpace())
                ++j;
        } else if (c == QLatin1Char('\'')) {
            kind = Kind::Literal;
            while (j < n) {
                if (sql[j] == QLatin1Char('\'')) {
                    if (j + 1 < n && sql[j + 1] == QLatin1Char('\'')) {
                        j += 2;
                        continue;
                    }
                    ++j;
                    break;
                }
                ++j;
            }
        } else if (c.isLetter() || c == QLatin1Char('_')) {
            kind = Kind::Word;
            while (j < n && (sql[j].isLetterOrNumber() || sql[j] == QLatin1Char('_')))
                ++j;
        } else if (c == QLatin1Char('|') && j < n && sql[j] == QLatin1Char('|')) {
            ++j;
        }
        out.push_back({kind, sql.mid(i, j - i)});
        i = j;
    }
    return out;
}

// Index of the next (dir = 1) or previous (dir = -1) token that isn't blank.
int Neighbour(const std::vector<Token>& t, int i, int dir)
{
    for (i += dir; i >= 0 && i < int(t.size()); i += dir)
        if (t[i].kind != Kind::Space)
            return i;
    return -1;
}

bool Is(const Token& t, const char* word)
{
    return t.kind == Kind::Word && t.text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool Is_Text_Function(const std::vector<Token>& t, int i)
{
    if (i < 0 || !(Is(t[i], "LEFT") || Is(t[i], "RIGHT") || Is(t[i], "MID")))
        return false;
    const int next = Neighbour(t, i, 1);
    return next >= 0 && t[next].text == QLatin1String("(");
}

QString Function_Name(const Token& t, Engine engine)
{
    const QString upper = t.text.toUpper();
    if (engine == Engine::Sqlite)
        return QStringLiteral("vex_") + upper.toLower(); // registered on every connection
    return upper == QLatin1String("MID") ? QStringLiteral("substr") : upper.toLower();
}

} // namespace

QString Translate_Sql(const QString& jetSql, Engine engine)
{
    if (engine == Engine::Odbc)
        return jetSql;
    std::vector<Token> t = Tokenize(jetSql);

    // Which ')' closes a call of a text function: '+' beside it joins texts.
    std::vector<bool> textCall(t.size(), false);
    std::vector<bool> stack;
    for (int i = 0; i < int(t.size()); ++i) {
        if (t[i].text == QLatin1String("(")) {
            stack.push_back(Is_Text_Function(t, Neighbour(t, i, -1)));
        } else if (t[i].text == QLatin1String(")") && !stack.empty()) {
            textCall[i] = stack.back();
            stack.pop_back();
        }
    }

    QString out;
    for (int i = 0; i < int(t.size()); ++i) {
        const Token& tok = t[i];
        if (Is_Text_Function(t, i)) {
            out += Function_Name(tok, engine);
            continue;
        }
        if (tok.text == QLatin1String("*")) {
            const int prev = Neighbour(t, i, -1);
            const int next = Neighbour(t, i, 1);
            if (prev >= 0 && next >= 0 && Is(t[prev], "DELETE") && Is(t[next], "FROM")) {
                // "DELETE * FROM T": the star and the blank after it go.
                if (i + 1 < int(t.size()) && t[i + 1].kind == Kind::Space)
                    ++i;
                continue;
            }
        }
        if (tok.text == QLatin1String("+")) {
            const int prev = Neighbour(t, i, -1);
            const int next = Neighbour(t, i, 1);
            const bool textLeft = prev >= 0 && (t[prev].kind == Kind::Literal || textCall[prev]);
            const bool textRight = next >= 0 && (t[next].kind == Kind::Literal || Is_Text_Function(t, next));
            if (textLeft || textRight) {
                out += QStringLiteral("||");
                continue;
            }
        }
        out += tok.text;
    }
    return out;
}

} // namespace vex
