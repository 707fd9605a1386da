#include "shell/dialogs/DlgAdvertisements.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/dialogs/EditedText.h"
#include "shell/look/DialogParts.h"

CDlgAdvertisements::CDlgAdvertisements(const Sections& pageSections, QWidget* parent)
    : QDialog(parent), sections(pageSections), section(new QComboBox(this)), code(new QPlainTextEdit(this))
{
    setWindowTitle(Text(StringId::AdvertisementsTitle));
    const QString sectionLabel = QStringLiteral("&Section:");
    const QString codeLabel = QStringLiteral("&HTML code:");
    NameControl(*section, "section", sectionLabel);
    NameControl(*code, "code", codeLabel);
    code->setTabChangesFocus(true);
    code->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    for (const auto& each : sections) {
        section->addItem(each.first);
    }

    auto* layout = new QVBoxLayout(this);
    auto* sectionRow = new QHBoxLayout;
    sectionRow->addWidget(MakeLabel(sectionLabel, *section));
    sectionRow->addWidget(section, 1);
    layout->addLayout(sectionRow);
    layout->addWidget(MakeLabel(codeLabel, *code));
    layout->addWidget(code);
    if (sections.empty()) {
        auto* note = new QLabel(Text(StringId::NoAdvertisementSections));
        note->setWordWrap(true);
        layout->addWidget(note);
    }
    QDialogButtonBox* buttons = AddOkAndCancel(*this, *layout);
    for (QWidget* control : {static_cast<QWidget*>(section), static_cast<QWidget*>(code),
                             static_cast<QWidget*>(buttons->button(QDialogButtonBox::Ok))}) {
        control->setEnabled(!sections.empty());
    }
    resize(520, 360);
    connect(section, &QComboBox::currentIndexChanged, this, &CDlgAdvertisements::OnSectionChanged);
    ShowCode(section->currentIndex());
}

void CDlgAdvertisements::OnSectionChanged(int index)
{
    StoreCode();
    ShowCode(index);
}

void CDlgAdvertisements::StoreCode()
{
    // The edit knows one kind of line end; code that nobody touched keeps its own.
    if (code->document()->isModified()) {
        sections[shownSection] = TextOf(*code);
    }
}

void CDlgAdvertisements::ShowCode(int index)
{
    if (index >= 0) {
        shownSection = section->itemText(index);
        code->setPlainText(sections[shownSection]);
        code->document()->setModified(false);
    }
}

void CDlgAdvertisements::accept()
{
    StoreCode();
    QDialog::accept();
}
