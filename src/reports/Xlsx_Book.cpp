#include "reports/Xlsx_Book.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>
#include <vector>
#include <pugixml.hpp>
#include <zip.h>

namespace vex {

namespace {

const char* const kMainTemplate = "application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml";
const char* const kMainSheet = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
const char* const kWorksheet = "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
const char* const kRelationshipsNs = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const char* const kWorksheetRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet";

bool Read_Entry(zip_t* z, const char* name, std::string& out)
{
    zip_stat_t st;
    if (zip_stat(z, name, 0, &st) != 0 || !(st.valid & ZIP_STAT_SIZE) || st.size > (64u << 20))
        return false;
    zip_file_t* f = zip_fopen(z, name, 0);
    if (!f)
        return false;
    out.resize(st.size);
    const zip_int64_t n = zip_fread(f, out.data(), st.size);
    zip_fclose(f);
    return n == static_cast<zip_int64_t>(st.size);
}

// A part name from a relationship target: "/xl/x.xml" is absolute, anything
// else is relative to the folder "xl/" of the workbook part.
std::string Part_Name(const std::string& target)
{
    if (!target.empty() && target[0] == '/')
        return target.substr(1);
    return "xl/" + target;
}

struct Xml_Writer : pugi::xml_writer {
    std::string text;
    void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
};

std::string Xml_Text(const pugi::xml_document& doc)
{
    Xml_Writer w;
    doc.save(w, "", pugi::format_raw, pugi::encoding_utf8);
    return w.text;
}

} // namespace

struct Xlsx_Book::Impl {
    QString templatePath;
    std::string sheetPart;
    pugi::xml_document sheet;
    pugi::xml_document types;
    pugi::xml_document workbook;
    pugi::xml_document rels;
    pugi::xml_node sheetEntry; // the present sheet in the workbook's list
    pugi::xml_node sheetData;
    std::map<int, pugi::xml_node> rows;
    // Sheets added after the template's: finished ones wait in files.
    int added = 0;
    std::unique_ptr<QTemporaryDir> spill;
    std::vector<std::pair<std::string, QString>> finished; // part, file

    // Takes the rows of the sheet, made sound first: a template is the
    // user's file. A row without a number, or with one seen before, goes;
    // in a row each cell is named by the row it stands in, cells without a
    // column or with one seen before go, and the rest stand in column order.
    void Take_Rows()
    {
        rows.clear();
        std::vector<pugi::xml_node> gone;
        for (pugi::xml_node r : sheetData.children("row")) {
            const int at = r.attribute("r").as_int();
            if (at <= 0 || rows.count(at)) {
                gone.push_back(r);
                continue;
            }
            rows[at] = r;
            std::map<int, pugi::xml_node> cells;
            for (pugi::xml_node c : r.children("c")) {
                const int col = Column_Of(c.attribute("r").value());
                if (col <= 0 || col > 16384 || !cells.emplace(col, c).second)
                    gone.push_back(c);
            }
            for (auto& [col, c] : cells) {
                char ref[16];
                Ref_Text(col, at, ref);
                c.attribute("r").set_value(ref);
                r.append_move(c);
            }
        }
        for (pugi::xml_node n : gone)
            n.parent().remove_child(n);
    }

    pugi::xml_node Row(int r)
    {
        auto it = rows.find(r);
        if (it != rows.end())
            return it->second;
        auto next = rows.upper_bound(r);
        pugi::xml_node node = next == rows.end() ? sheetData.append_child("row")
                                                 : sheetData.insert_child_before("row", next->second);
        node.append_attribute("r") = r;
        rows.emplace(r, node);
        return node;
    }

    // The cell of a row, made in column order when new. Rows are filled left
    // to right, so the search starts at the end.
    pugi::xml_node Cell(int col, int row)
    {
        pugi::xml_node r = Row(row);
        pugi::xml_node after;
        for (pugi::xml_node c = r.last_child(); c; c = c.previous_sibling()) {
            const int cc = Column_Of(c.attribute("r").value());
            if (cc == col)
                return c;
            if (cc > 0 && cc < col) {
                after = c;
                break;
            }
        }
        pugi::xml_node c = after ? r.insert_child_after("c", after) : r.prepend_child("c");
        char ref[16];
        Ref_Text(col, row, ref);
        c.append_attribute("r") = ref;
        return c;
    }

    // Column number of a reference ("AB12" -> 28); 0 when it has none.
    static int Column_Of(const char* ref)
    {
        int col = 0;
        for (; *ref >= 'A' && *ref <= 'Z'; ++ref)
            if ((col = col * 26 + (*ref - 'A' + 1)) > 16384)
                return 0; // past the last column a sheet has
        return col;
    }

    static void Ref_Text(int col, int row, char (&out)[16])
    {
        char letters[4];
        int n = 0;
        for (; col > 0 && n < 3; col = (col - 1) / 26)
            letters[n++] = char('A' + (col - 1) % 26);
        int at = 0;
        while (n > 0)
            out[at++] = letters[--n];
        std::snprintf(out + at, sizeof out - at, "%d", row);
    }

    static void Clear_Value(pugi::xml_node c)
    {
        while (pugi::xml_node child = c.first_child())
            c.remove_child(child);
        c.remove_attribute("t");
    }
};

Xlsx_Book::Xlsx_Book() : d(std::make_unique<Impl>()) {}
Xlsx_Book::~Xlsx_Book() = default;

QString Xlsx_Book::Column_Name(int col)
{
    QString name;
    for (; col > 0; col = (col - 1) / 26)
        name.prepend(QChar('A' + (col - 1) % 26));
    return name;
}

bool Xlsx_Book::Parse_Ref(const QString& ref, int& col, int& row)
{
    col = 0;
    row = 0;
    int i = 0;
    for (; i < ref.size() && ref[i].isUpper(); ++i)
        col = col * 26 + (ref[i].unicode() - 'A' + 1);
    if (col == 0 || i == ref.size())
        return false;
    bool ok = false;
    row = ref.mid(i).toInt(&ok);
    return ok && row > 0;
}

bool Xlsx_Book::Open(const QString& templatePath, const QString& sheetName)
{
    d = std::make_unique<Impl>();
    d->templatePath = templatePath;
    int err = 0;
    zip_t* z = zip_open(QFile::encodeName(templatePath).constData(), ZIP_RDONLY, &err);
    if (!z) {
        error_ = QStringLiteral("%1: not a workbook").arg(templatePath);
        return false;
    }
    std::string workbook, rels, types, sheet;
    const bool parts = Read_Entry(z, "xl/workbook.xml", workbook) && Read_Entry(z, "xl/_rels/workbook.xml.rels", rels)
        && Read_Entry(z, "[Content_Types].xml", types);
    pugi::xml_document& wb = d->workbook;
    pugi::xml_document& rl = d->rels;
    std::string target;
    if (parts && wb.load_buffer(workbook.data(), workbook.size()) && rl.load_buffer(rels.data(), rels.size())) {
        const std::string want = sheetName.toStdString();
        for (pugi::xml_node s : wb.child("workbook").child("sheets").children("sheet")) {
            if (!want.empty() && want != s.attribute("name").value())
                continue;
            const char* id = s.attribute("r:id").value();
            for (pugi::xml_node r : rl.child("Relationships").children("Relationship"))
                if (std::string(r.attribute("Id").value()) == id)
                    target = r.attribute("Target").value();
            d->sheetEntry = s;
            break;
        }
    }
    if (!target.empty()) {
        d->sheetPart = Part_Name(target);
        if (!Read_Entry(z, d->sheetPart.c_str(), sheet))
            target.clear();
    }
    zip_close(z);
    if (!parts || target.empty()) {
        error_ = parts ? QStringLiteral("%1: no sheet \"%2\"").arg(templatePath, sheetName)
                       : QStringLiteral("%1: not a workbook").arg(templatePath);
        return false;
    }
    if (!d->sheet.load_buffer(sheet.data(), sheet.size()) || !d->types.load_buffer(types.data(), types.size())) {
        error_ = QStringLiteral("%1: broken sheet").arg(templatePath);
        return false;
    }
    pugi::xml_node ws = d->sheet.child("worksheet");
    // The range the template declares would be wrong once rows are added.
    ws.remove_child("dimension");
    d->sheetData = ws.child("sheetData");
    if (!d->sheetData) {
        error_ = QStringLiteral("%1: broken sheet").arg(templatePath);
        return false;
    }
    d->Take_Rows();
    error_.clear();
    return true;
}

void Xlsx_Book::Set_Text(int col, int row, const QString& text)
{
    pugi::xml_node c = d->Cell(col, row);
    Impl::Clear_Value(c);
    if (text.isEmpty())
        return;
    c.append_attribute("t") = "inlineStr";
    pugi::xml_node t = c.append_child("is").append_child("t");
    if (text.front().isSpace() || text.back().isSpace())
        t.append_attribute("xml:space") = "preserve";
    t.text().set(text.toUtf8().constData());
}

void Xlsx_Book::Set_Number(int col, int row, double value)
{
    pugi::xml_node c = d->Cell(col, row);
    Impl::Clear_Value(c);
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.15g", value);
    c.append_child("v").text().set(buf);
}

void Xlsx_Book::Set_Text(const QString& ref, const QString& text)
{
    int col = 0, row = 0;
    if (Parse_Ref(ref, col, row))
        Set_Text(col, row, text);
}

void Xlsx_Book::Set_Number(const QString& ref, double value)
{
    int col = 0, row = 0;
    if (Parse_Ref(ref, col, row))
        Set_Number(col, row, value);
}

QString Xlsx_Book::Text(int col, int row) const
{
    auto it = d->rows.find(row);
    if (it == d->rows.end())
        return {};
    char ref[16];
    Impl::Ref_Text(col, row, ref);
    pugi::xml_node c = it->second.find_child_by_attribute("c", "r", ref);
    if (!c)
        return {};
    if (pugi::xml_node t = c.child("is").child("t"))
        return QString::fromUtf8(t.text().get());
    return QString::fromUtf8(c.child("v").text().get());
}

void Xlsx_Book::Copy_Row_Format(int from, int to)
{
    auto it = d->rows.find(from);
    if (it == d->rows.end() || from == to)
        return;
    pugi::xml_node src = it->second;
    pugi::xml_node dst = d->Row(to);
    for (const char* a : {"ht", "customHeight", "s", "customFormat"}) {
        dst.remove_attribute(a);
        if (pugi::xml_attribute v = src.attribute(a))
            dst.append_attribute(a) = v.value();
    }
    for (pugi::xml_node c : src.children("c")) {
        const int col = Impl::Column_Of(c.attribute("r").value());
        if (col == 0)
            continue;
        pugi::xml_node t = d->Cell(col, to);
        t.remove_attribute("s");
        if (pugi::xml_attribute s = c.attribute("s"))
            t.append_attribute("s") = s.value();
    }
}

int Xlsx_Book::Sheet_Count() const
{
    int n = 0;
    for (pugi::xml_node s : d->workbook.child("workbook").child("sheets").children("sheet"))
        n += s ? 1 : 0;
    return n;
}

bool Xlsx_Book::Add_Sheet(const QString& name, int headRows, int formatRow)
{
    // The finished sheet goes to a file of its own.
    if (!d->spill)
        d->spill = std::make_unique<QTemporaryDir>();
    const QString file = d->spill->filePath(QString::number(d->finished.size()));
    QFile out(file);
    if (!d->spill->isValid() || !out.open(QIODevice::WriteOnly)) {
        error_ = QStringLiteral("cannot write %1").arg(file);
        return false;
    }
    const std::string text = Xml_Text(d->sheet);
    if (out.write(text.data(), qint64(text.size())) != qint64(text.size()) || !out.flush()) {
        error_ = QStringLiteral("cannot write %1").arg(file);
        return false;
    }
    out.close();
    d->finished.emplace_back(d->sheetPart, file);

    // The new sheet: everything of the old but its rows below the head and
    // the parts it referred to (drawings, printer settings), which belong to
    // the first sheet alone.
    pugi::xml_document next;
    pugi::xml_node ws = next.append_child("worksheet");
    pugi::xml_node old = d->sheet.child("worksheet");
    for (pugi::xml_attribute a : old.attributes())
        ws.append_attribute(a.name()) = a.value();
    for (pugi::xml_node child : old.children()) {
        const std::string tag = child.name();
        if (tag == "drawing" || tag == "legacyDrawing" || tag == "tableParts" || tag == "hyperlinks"
            || tag == "picture" || tag == "oleObjects" || tag == "controls")
            continue;
        if (tag == "sheetData") {
            pugi::xml_node data = ws.append_child("sheetData");
            for (pugi::xml_node r : child.children("row")) {
                const int at = r.attribute("r").as_int();
                if (at > headRows && at != formatRow)
                    continue;
                pugi::xml_node copy = data.append_copy(r);
                if (at > headRows)
                    for (pugi::xml_node c : copy.children("c"))
                        Impl::Clear_Value(c);
            }
            continue;
        }
        pugi::xml_node copy = ws.append_copy(child);
        copy.remove_attribute("r:id");
        for (pugi::xml_node view : copy.children("sheetView"))
            view.remove_attribute("tabSelected");
    }
    d->sheet.reset(next);

    ++d->added;
    const std::string id = "rIdVex" + std::to_string(d->added);
    d->sheetPart = "xl/worksheets/vex" + std::to_string(d->added) + ".xml";
    pugi::xml_node rel = d->rels.child("Relationships").append_child("Relationship");
    rel.append_attribute("Id") = id.c_str();
    rel.append_attribute("Type") = kWorksheetRel;
    rel.append_attribute("Target") = ("/" + d->sheetPart).c_str();
    pugi::xml_node type = d->types.child("Types").append_child("Override");
    type.append_attribute("PartName") = ("/" + d->sheetPart).c_str();
    type.append_attribute("ContentType") = kWorksheet;
    int sheetId = 0;
    pugi::xml_node sheets = d->workbook.child("workbook").child("sheets");
    for (pugi::xml_node s : sheets.children("sheet"))
        sheetId = std::max(sheetId, s.attribute("sheetId").as_int());
    pugi::xml_node entry = sheets.insert_child_after("sheet", d->sheetEntry);
    entry.append_attribute("xmlns:r") = kRelationshipsNs;
    entry.append_attribute("name") = name.toUtf8().constData();
    entry.append_attribute("sheetId") = sheetId + 1;
    entry.append_attribute("r:id") = id.c_str();
    d->sheetEntry = entry;

    d->sheetData = d->sheet.child("worksheet").child("sheetData");
    d->Take_Rows();
    return true;
}

bool Xlsx_Book::Save(const QString& path)
{
    // A template's main part says "template"; the saved file is a workbook.
    for (pugi::xml_node o : d->types.child("Types").children("Override"))
        if (std::string(o.attribute("ContentType").value()) == kMainTemplate)
            o.attribute("ContentType") = kMainSheet;
    const QString temp = path + QStringLiteral(".part");
    QFile::remove(temp);
    if (!QFile::copy(d->templatePath, temp)) {
        error_ = QStringLiteral("cannot write %1").arg(temp);
        return false;
    }
    QFile::setPermissions(temp, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    int err = 0;
    zip_t* z = zip_open(QFile::encodeName(temp).constData(), 0, &err);
    bool ok = z != nullptr;
    const std::string sheet = Xml_Text(d->sheet);
    const std::string types = Xml_Text(d->types);
    std::vector<std::pair<std::string, const std::string*>> parts{{d->sheetPart, &sheet},
                                                                  {"[Content_Types].xml", &types}};
    std::string workbook, rels;
    if (d->added > 0) {
        workbook = Xml_Text(d->workbook);
        rels = Xml_Text(d->rels);
        parts.emplace_back("xl/workbook.xml", &workbook);
        parts.emplace_back("xl/_rels/workbook.xml.rels", &rels);
    }
    // The fastest deflate: a big sheet is mostly repeated markup, which any
    // level packs well. A part of the template is deleted and added anew:
    // overwritten in place it would keep the template's method, and with it
    // the library's default level, the slowest.
    auto add = [&](const std::string& name, zip_source_t* src) {
        const zip_int64_t old = zip_name_locate(z, name.c_str(), 0);
        if (old >= 0 && zip_delete(z, zip_uint64_t(old)) != 0) {
            zip_source_free(src);
            return false;
        }
        const zip_int64_t index = src ? zip_file_add(z, name.c_str(), src, ZIP_FL_ENC_UTF_8) : -1;
        if (index < 0 && src)
            zip_source_free(src);
        if (index >= 0)
            zip_set_file_compression(z, zip_uint64_t(index), ZIP_CM_DEFLATE, 1);
        return index >= 0;
    };
    for (const auto& [name, text] : parts)
        ok = ok && add(name, zip_source_buffer(z, text->data(), text->size(), 0));
    for (const auto& [name, file] : d->finished)
        ok = ok && add(name, zip_source_file(z, QFile::encodeName(file).constData(), 0, -1));
    if (z && ok)
        ok = zip_close(z) == 0;
    else if (z)
        zip_discard(z);
    if (ok && std::rename(QFile::encodeName(temp).constData(), QFile::encodeName(path).constData()) != 0)
        ok = false;
    if (!ok) {
        QFile::remove(temp);
        error_ = QStringLiteral("cannot write %1").arg(path);
    }
    return ok;
}

} // namespace vex
