#include "forms/Register_Form.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/logic/Captions.h"
#include "store/Cls_DB.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

namespace vex::forms {

Register_Form::Register_Form(const Register_Def& def, QWidget* parent) : Vex_Form(def.formName, parent), def_(def)
{
    setWindowTitle(Caption_Of(def.titleId, def.fixedTitle));

    TDBGrid1 = new QTableView(this);
    TDBGrid1->setObjectName(QStringLiteral("TDBGrid1"));
    Model = new QStandardItemModel(this);
    TDBGrid1->setModel(Model);
    TDBGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    TDBGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    TDBGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    TDBGrid1->horizontalHeader()->setStretchLastSection(true);
    TDBGrid1->verticalHeader()->setDefaultSectionSize(22);

    auto* fields = new QGridLayout;
    for (size_t i = 0; i < def.fields.size(); ++i) {
        const Register_Field& f = def.fields[i];
        auto* label = new QLabel(Field_Caption(f), this);
        QWidget* w = nullptr;
        if (f.date) {
            auto* d = new QDateEdit(QDate::currentDate(), this);
            d->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
            d->setCalendarPopup(true);
            w = d;
        } else {
            w = new QLineEdit(this);
        }
        w->setObjectName(QStringLiteral("TDBTxt_%1").arg(i));
        w->installEventFilter(this);
        Labels.push_back(label);
        Fields.push_back(w);
        // Two columns of label and field.
        const int r = int(i) / 2, c = (int(i) % 2) * 2;
        fields->addWidget(label, r, c);
        fields->addWidget(w, r, c + 1);
    }
    fields->setColumnStretch(1, 1);
    fields->setColumnStretch(3, 1);

    const int ids[5] = {500, 501, 502, 0, 504};
    for (int i = 0; i < 5; ++i) {
        Command1[i] = nullptr;
        if (i == 3)
            continue;
        Command1[i] = new QPushButton(LoadResString(ids[i]), this);
        Command1[i]->setObjectName(QStringLiteral("Command1_%1").arg(i));
        connect(Command1[i], &QPushButton::clicked, this, [this, i] { Command1_Click(i); });
    }
    cboSearch = new QComboBox(this);
    cboSearch->setObjectName(QStringLiteral("cboSearch"));
    // The search fields are fields 0, 1, 2 of the form; their columns are
    // the register's own (the driver's are the code, employee and resident
    // numbers).
    for (int k = 0; k < 3; ++k) {
        const int col = def.searchColumns.value(k).mid(3).toInt();
        QString caption;
        for (const Register_Field& f : def.fields)
            if (f.column == def.searchColumns.value(k))
                caption = Field_Caption(f);
        if (caption.isEmpty())
            caption = def.scopeColumn.isEmpty() ? def.searchColumns.value(k) : LoadResString(632);
        cboSearch->addItem(caption, col);
    }
    txtSearch = new QLineEdit(this);
    txtSearch->setObjectName(QStringLiteral("txtSearch"));
    txtSearch->setPlaceholderText(QStringLiteral("*"));
    cmdSearch = new QPushButton(LoadResString(1041), this);
    cmdSearch->setObjectName(QStringLiteral("cmdSearch"));
    connect(cmdSearch, &QPushButton::clicked, this, [this] { Search(cboSearch->currentIndex(), txtSearch->text()); });
    connect(txtSearch, &QLineEdit::returnPressed, this,
            [this] { Search(cboSearch->currentIndex(), txtSearch->text()); });

    auto* box = new QVBoxLayout(this);
    if (!def.scopeColumn.isEmpty()) {
        cboCar = new QComboBox(this);
        cboCar->setObjectName(QStringLiteral("cboCar"));
        cboCar->setMinimumContentsLength(8);
        auto* carRow = new QHBoxLayout;
        carRow->addWidget(new QLabel(LoadResString(632), this));
        carRow->addWidget(cboCar);
        carRow->addStretch();
        box->addLayout(carRow);
        if (G().DB)
            cboCar->addItems(Car_Codes(*G().DB));
        connect(cboCar, &QComboBox::currentTextChanged, this, [this] { Refresh(); });
    }
    auto* searchRow = new QHBoxLayout;
    searchRow->addWidget(cboSearch);
    searchRow->addWidget(txtSearch, 1);
    searchRow->addWidget(cmdSearch);
    box->addLayout(searchRow);
    box->addWidget(TDBGrid1, 1);
    box->addLayout(fields);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (int i : {0, 1, 2, 4})
        buttons->addWidget(Command1[i]);
    box->addLayout(buttons);

    connect(TDBGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& cur) {
                if (mode_ != Adding && cur.isValid())
                    Show_Row(cur.row());
            });
    Refresh();
    Set_Mode(Browse);
}

QString Register_Form::Scope() const
{
    return cboCar ? cboCar->currentText() : QString();
}

QString Register_Form::Field_Text(int i) const
{
    QWidget* w = Fields.at(size_t(i));
    if (auto* d = qobject_cast<QDateEdit*>(w))
        return d->date().toString(Qt::ISODate);
    return static_cast<QLineEdit*>(w)->text();
}

void Register_Form::Set_Field_Text(int i, const QString& text)
{
    QWidget* w = Fields.at(size_t(i));
    if (auto* d = qobject_cast<QDateEdit*>(w)) {
        QDate date = QDate::fromString(text.left(10), Qt::ISODate);
        d->setDate(date.isValid() ? date : QDate::currentDate());
    } else {
        static_cast<QLineEdit*>(w)->setText(text);
    }
}

void Register_Form::Refresh(const QString& selectCode)
{
    if (!G().DB)
        return;
    rows_ = Register_List(*G().DB, def_, Scope(), searchColumn_, searchText_);
    Model->clear();
    QStringList heads;
    for (int id : def_.gridHeads)
        heads << LoadResString(id);
    Model->setHorizontalHeaderLabels(heads);
    int select = rows_.rows.empty() ? -1 : 0;
    for (size_t r = 0; r < rows_.rows.size(); ++r) {
        QList<QStandardItem*> items;
        for (int fi : def_.grid) {
            const int col = int(rows_.columns.indexOf(def_.fields[size_t(fi)].column));
            items << new QStandardItem(col >= 0 ? rows_.rows[r][col].toString() : QString());
        }
        Model->appendRow(items);
        if (!selectCode.isEmpty() && items.first()->text() == selectCode)
            select = int(r);
    }
    TDBGrid1->resizeColumnsToContents();
    // Wide enough to show every column without scrolling, within reason:
    // from what the columns hold, never from their widths now, which a
    // stretched last column inflates at every refresh.
    int width = TDBGrid1->verticalHeader()->sizeHint().width() + 24;
    for (int c = 0; c < Model->columnCount(); ++c)
        width += std::max(static_cast<const QAbstractItemView*>(TDBGrid1)->sizeHintForColumn(c),
                          TDBGrid1->horizontalHeader()->sectionSizeHint(c));
    TDBGrid1->setMinimumWidth(qMin(width, 900));
    if (select >= 0) {
        TDBGrid1->setCurrentIndex(Model->index(select, 0));
        Show_Row(select);
    } else if (mode_ != Adding) {
        for (size_t i = 0; i < def_.fields.size(); ++i)
            Set_Field_Text(int(i), QString());
    }
    Update_Buttons();
}

void Register_Form::Show_Row(int row)
{
    if (row < 0 || size_t(row) >= rows_.rows.size())
        return;
    bookmark_ = row;
    const QVariantList& values = rows_.rows[size_t(row)];
    for (size_t i = 0; i < def_.fields.size(); ++i) {
        const Register_Field& f = def_.fields[i];
        const int col = int(rows_.columns.indexOf(f.column));
        const QVariant v = col >= 0 ? values.value(col) : QVariant();
        Set_Field_Text(int(i), v.isNull() ? Null_Value(f) : v.toString());
    }
}

void Register_Form::Clear_To_New()
{
    for (size_t i = 0; i < def_.fields.size(); ++i)
        Set_Field_Text(int(i), New_Value(def_.fields[i]));
}

void Register_Form::Set_Mode(Register_Mode mode)
{
    mode_ = mode;
    const bool browsing = mode == Browse;
    Command1[1]->setText(LoadResString(browsing ? 501 : 505));
    Command1[2]->setText(LoadResString(browsing ? 502 : 506));
    // The code is typed for a new row only; an edited row keeps its code.
    if (auto* code = qobject_cast<QLineEdit*>(Fields[0]))
        code->setReadOnly(mode == Editing);
    TDBGrid1->setEnabled(mode != Adding);
    Update_Buttons();
}

void Register_Form::Update_Buttons()
{
    if (mode_ == Browse) {
        const bool any = Model->rowCount() > 0;
        Command1[1]->setEnabled(any);
        Command1[2]->setEnabled(any);
    } else {
        Command1[1]->setEnabled(true);
        Command1[2]->setEnabled(true);
    }
}

void Register_Form::Command1_Click(int index)
{
    Globals& g = G();
    if (!g.DB)
        return;
    switch (index) {
    case 0:
        Clear_To_New();
        Set_Mode(Adding);
        Fields[0]->setFocus();
        break;
    case 1: {
        if (mode_ == Browse) {
            Set_Mode(Editing);
            if (Fields.size() > 1)
                Fields[1]->setFocus();
            break;
        }
        QStringList values;
        for (size_t i = 0; i < Fields.size(); ++i)
            values << Field_Text(int(i));
        const int result = Register_Save(*g.DB, def_, mode_, values, Scope());
        if (result == 152) {
            Msg_Box(152, QMessageBox::Information);
            return;
        }
        if (result == 153) {
            Msg_Box(153, QMessageBox::Information);
            Fields[0]->setFocus();
            return;
        }
        if (result != 150)
            return; // the handler ran: silent, the mode stays
        Set_Mode(Browse);
        Refresh(values.value(0));
        Msg_Box(150, QMessageBox::Information);
        break;
    }
    case 2: {
        if (mode_ != Browse) {
            // Cancel: back to the row of the bookmark.
            Set_Mode(Browse);
            if (Model->rowCount() > 0) {
                const int row = qBound(0, bookmark_, Model->rowCount() - 1);
                TDBGrid1->setCurrentIndex(Model->index(row, 0));
                Show_Row(row);
            }
            break;
        }
        bool deleted = false;
        const QString code = Field_Text(0);
        if (!code.isEmpty()
            && Msg_Box(1150, QMessageBox::Question, {}, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes) {
            deleted = Register_Delete(*g.DB, def_, code, Scope());
            Refresh();
        }
        Msg_Box(deleted ? 154 : 155, QMessageBox::Information);
        Update_Buttons();
        break;
    }
    case 4:
        close();
        break;
    }
}

void Register_Form::Search(int k, const QString& text)
{
    searchColumn_ = text.isEmpty() ? QString() : def_.searchColumns.value(k);
    searchText_ = text;
    Refresh();
}

bool Register_Form::eventFilter(QObject* watched, QEvent* e)
{
    // Enter in a field moves on, as Tab does.
    if (e->type() == QEvent::KeyPress) {
        auto* k = static_cast<QKeyEvent*>(e);
        if (k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter) {
            focusNextChild();
            return true;
        }
    }
    return Vex_Form::eventFilter(watched, e);
}

void Register_Form::closeEvent(QCloseEvent* e)
{
    // A reception interrupted by an unknown car would go on here; nothing
    // sets the flag today, so the window just closes.
    G().Register_Row = 0;
    Vex_Form::closeEvent(e);
}

} // namespace vex::forms
