#include "store/SqlDialect.h"

#include <vector>

namespace vex {

namespace {

enum class Kind { Space, Word, Literal, Number, Symbol };

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
        } else if (c.isDigit()) {
            kind = Kind::Number;
            while (j < n && sql[j].isDigit())
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

// The arguments of the call whose '(' is at open: the tokens of each without
// the blanks, and the commas between them.
struct Call {
    std::vector<std::vector<int>> args{1};
    std::vector<int> commas;
};

Call Arguments(const std::vector<Token>& t, int open)
{
    Call c;
    int depth = 0;
    for (int i = open + 1; i < int(t.size()); ++i) {
        const QString& x = t[i].text;
        if (x == QLatin1String(")") && depth == 0)
            return c;
        if (x == QLatin1String(",") && depth == 0) {
            c.commas.push_back(i);
            c.args.emplace_back();
            continue;
        }
        if (x == QLatin1String("("))
            ++depth;
        else if (x == QLatin1String(")"))
            --depth;
        if (t[i].kind != Kind::Space)
            c.args.back().push_back(i);
    }
    return {}; // not closed: left as written
}

// A count written in the statement as a whole number; -1 for anything else.
int Written_Count(const std::vector<Token>& t, const std::vector<int>& arg)
{
    return arg.size() == 1 && t[arg[0]].kind == Kind::Number ? t[arg[0]].text.toInt() : -1;
}

// A call whose counts are written in the statement becomes the engine's own
// substr() where the engine's substr() answers alike, so that every client
// of the file knows it and an index of the schema can be built on it: on
// SQLite LEFT, RIGHT (substr(x,-n)) and MID, on a server LEFT, so that the
// car selected by LEFT(D_F1,6) and by MID(D_F1,1,6) is one expression there
// too. SQLite's substr() counts characters as the vex_ functions do; they
// differ where a count is below 0, a start below 1 or RIGHT's count 0
// (substr(x,0) is the whole text), and such a count, or a computed one,
// keeps the registered function. What each token becomes goes into as.
void Substr_Call(const std::vector<Token>& t, int name, Engine engine, std::vector<QString>& as)
{
    const Call c = Arguments(t, Neighbour(t, name, 1));
    const QString upper = t[name].text.toUpper();
    const int n = int(c.args.size());
    if (upper == QLatin1String("LEFT") && n == 2 && Written_Count(t, c.args[1]) >= 0) {
        as[size_t(c.commas[0])] = QStringLiteral(",1,"); // LEFT(x,n): substr(x,1,n)
    } else if (engine != Engine::Sqlite) {
        return; // right() and substr() as they stand
    } else if (upper == QLatin1String("RIGHT") && n == 2 && Written_Count(t, c.args[1]) >= 1) {
        const int count = c.args[1][0];
        as[size_t(count)] = QLatin1Char('-') + t[count].text; // RIGHT(x,n): substr(x,-n)
    } else if (!(upper == QLatin1String("MID") && (n == 2 || n == 3) && Written_Count(t, c.args[1]) >= 1
                 && (n == 2 || Written_Count(t, c.args[2]) >= 0))) {
        return; // MID(x,s[,n]) is substr(x,s[,n]) as it stands
    }
    as[size_t(name)] = QStringLiteral("substr");
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

    std::vector<QString> as(t.size());
    for (int i = 0; i < int(t.size()); ++i)
        if (Is_Text_Function(t, i))
            Substr_Call(t, i, engine, as);

    QString out;
    for (int i = 0; i < int(t.size()); ++i) {
        const Token& tok = t[i];
        if (!as[size_t(i)].isNull()) {
            out += as[size_t(i)];
            continue;
        }
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
