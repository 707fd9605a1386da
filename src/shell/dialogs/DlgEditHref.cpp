#include "shell/dialogs/DlgEditHref.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "shell/dialogs/EditedText.h"
#include "shell/look/DialogParts.h"

CDlgEditHref::CDlgEditHref(const QString& name, const Reference& reference, QWidget* parent)
    : QDialog(parent), url(new QLineEdit(this)), text(new QLineEdit(this))
{
    setWindowTitle(name);
    const QString urlLabel = QStringLiteral("&URL:");
    const QString textLabel = QStringLiteral("&Reference text:");
    NameControl(*url, "url", urlLabel);
    NameControl(*text, "text", textLabel);
    url->setMaxLength(Limit);
    text->setMaxLength(Limit);
    url->setText(reference.url);
    text->setText(reference.text);

    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    AddRow(*form, urlLabel, *url);
    AddRow(*form, textLabel, *text);
    layout->addLayout(form);
    layout->addStretch();
    AddOkAndCancel(*this, *layout);
    resize(440, sizeHint().height());
    url->setFocus();
}

CDlgEditHref::Reference CDlgEditHref::GetReference() const
{
    return {OnOneLine(url->text()), OnOneLine(text->text())};
}
