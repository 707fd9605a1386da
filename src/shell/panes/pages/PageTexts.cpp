#include "shell/panes/pages/PageTexts.h"

#include "common/Exceptions.h"
#include "common/Variant.h"
#include "shell/dialogs/DlgEditHref.h"
#include "shell/dialogs/DlgEditTextProperty.h"
#include "shell/dialogs/FailureBox.h"
#include "shell/panes/pages/ShownPage.h"

namespace {

struct NamedProperties {
    QString name; // of the element, for people
    QStringList properties;
};

// False, and the person is told, if one of the texts would be lost.
bool CanKeep(const CShownPage& page, const NamedProperties& named, QWidget* parent)
{
    if (!page.HasNames()) {
        return false;
    }
    try {
        for (const QString& property : named.properties) {
            page.RequireKept(property, named.name);
        }
        return true;
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, parent);
        return false;
    }
}

} // namespace

bool EditTextOfPage(CShownPage& page, const CViewPagesExternalDispatchCommands::TextToEdit& edited,
                    QWidget* parent)
{
    if (!CanKeep(page, {edited.name, {edited.property}}, parent)) {
        return false;
    }
    const QString text = page.ReadVariable(edited.property).value_or(edited.text);
    const bool galleryWide = edited.property.startsWith(QStringLiteral("gallery"), Qt::CaseInsensitive);
    CDlgEditTextProperty dialog(edited.name, text,
                                {.multiline = edited.multiline, .galleryWide = galleryWide}, parent);
    // As the dialog shows it, which cuts what is too long.
    const QString before = dialog.GetText();
    if (dialog.exec() != QDialog::Accepted || dialog.GetText() == before) {
        return false;
    }
    page.WriteVariable(edited.property, CVariant(dialog.GetText()));
    return true;
}

bool EditReferenceOfPage(CShownPage& page, const ReferenceToEdit& edited, QWidget* parent)
{
    if (!CanKeep(page, {edited.name, {edited.hrefProperty, edited.textProperty}}, parent)) {
        return false;
    }
    CDlgEditHref dialog(edited.name,
                        {.url = page.ReadVariable(edited.hrefProperty).value_or(QString()),
                         .text = page.ReadVariable(edited.textProperty).value_or(QString())},
                        parent);
    const CDlgEditHref::Reference before = dialog.GetReference();
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    const CDlgEditHref::Reference after = dialog.GetReference();
    const bool isUrlChanged = after.url != before.url;
    const bool isTextChanged = after.text != before.text;
    if (isUrlChanged) {
        page.WriteVariable(edited.hrefProperty, CVariant(after.url));
    }
    if (isTextChanged) {
        // A link without a text could not be pointed at any more.
        page.WriteVariable(edited.textProperty, after.text.isEmpty() ? CVariant() : CVariant(after.text));
    }
    return isUrlChanged || isTextChanged;
}
