#include "shell/ftpdialogs/DlgTroubleshootList.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

CDlgTroubleshootList::CDlgTroubleshootList(const QString& listing, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(Text(StringId::ListOutputTitle));
    QPlainTextEdit* text = MakeReport(listing, "text", Text(StringId::ListOutputName));
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    AddOk(*this, *layout);
    resize(640, 300);
}
