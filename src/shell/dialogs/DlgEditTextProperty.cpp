#include "shell/dialogs/DlgEditTextProperty.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/dialogs/EditedText.h"
#include "shell/look/DialogParts.h"

CDlgEditTextProperty::CDlgEditTextProperty(const QString& name, const QString& text, Options options,
                                           QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(name);
    auto* layout = new QVBoxLayout(this);
    QWidget* edit = MakeEdit(text, options.multiline);
    NameControl(*edit, "text", name);
    layout->addWidget(MakeLabel(QStringLiteral("&Text:"), *edit));
    layout->addWidget(edit);
    if (options.galleryWide) {
        auto* note = new QLabel(Text(StringId::ChangedInEachPage));
        NameControl(*note, "note", note->text());
        note->setWordWrap(true);
        layout->addWidget(note);
    }
    AddOkAndCancel(*this, *layout);
    resize(options.multiline ? QSize(520, 320) : QSize(440, sizeHint().height()));
    edit->setFocus();
}

QWidget* CDlgEditTextProperty::MakeEdit(const QString& text, bool multiline)
{
    if (multiline) {
        lines = new CLimitedTextEdit(TextLimit, this);
        lines->SetText(ShowLineBreaks(text));
        lines->selectAll();
        return lines;
    }
    line = new QLineEdit(this);
    line->setMaxLength(LineLimit);
    line->setText(text);
    line->selectAll();
    return line;
}

QString CDlgEditTextProperty::GetText() const
{
    return lines ? StoreLineBreaks(TextOf(*lines)) : OnOneLine(line->text());
}
