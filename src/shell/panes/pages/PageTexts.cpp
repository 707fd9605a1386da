#include "shell/panes/pages/PageTexts.h"

#include "common/Exceptions.h"
#include "common/Variant.h"
#include "shell/dialogs/DlgEditHref.h"
#include "shell/dialogs/DlgEditTextProperty.h"
#include "shell/dialogs/FailureBox.h"
#include "shell/panes/pages/ShownPage.h"

namespace {

// Where the texts are kept; empty, and the person is told, if one of them would be lost.
std::vector<TextPlace> FindPlaces(const CShownPage& page, const QString& name, const QStringList& properties,
                                  QWidget* parent)
{
    if (!page.HasNames()) {
        return {};
    }
    try {
        std::vector<TextPlace> places;
        for (const QString& property : properties) {
            places.push_back(page.FindTextPlace(property, name));
        }
        return places;
    } catch (const CExceptionBase& failure) {
        ShowFailure(failure, parent);
        return {};
    }
}

} // namespace

std::vector<TextChange> EditTextOfPage(const CShownPage& page,
                                       const CViewPagesExternalDispatchCommands::TextToEdit& edited,
                                       QWidget* parent)
{
    const std::vector<TextPlace> places = FindPlaces(page, edited.name, {edited.property}, parent);
    if (places.empty()) {
        return {};
    }
    const QString text = page.ReadVariable(edited.property).value_or(edited.text);
    const bool galleryWide = edited.property.startsWith(QStringLiteral("gallery"), Qt::CaseInsensitive);
    CDlgEditTextProperty dialog(edited.name, text,
                                {.multiline = edited.multiline, .galleryWide = galleryWide}, parent);
    // As the dialog shows it, which cuts what is too long.
    const QString before = dialog.GetText();
    if (dialog.exec() != QDialog::Accepted || dialog.GetText() == before) {
        return {};
    }
    return {{.place = places[0], .text = CVariant(dialog.GetText())}};
}

std::vector<TextChange> EditReferenceOfPage(const CShownPage& page, const ReferenceToEdit& edited,
                                            QWidget* parent)
{
    const std::vector<TextPlace> places =
        FindPlaces(page, edited.name, {edited.hrefProperty, edited.textProperty}, parent);
    if (places.empty()) {
        return {};
    }
    CDlgEditHref dialog(edited.name,
                        {.url = page.ReadVariable(edited.hrefProperty).value_or(QString()),
                         .text = page.ReadVariable(edited.textProperty).value_or(QString())},
                        parent);
    const CDlgEditHref::Reference before = dialog.GetReference();
    if (dialog.exec() != QDialog::Accepted) {
        return {};
    }
    const CDlgEditHref::Reference after = dialog.GetReference();
    std::vector<TextChange> changes;
    if (after.url != before.url) {
        changes.push_back({.place = places[0], .text = CVariant(after.url)});
    }
    if (after.text != before.text) {
        // A link without a text could not be pointed at any more.
        changes.push_back(
            {.place = places[1], .text = after.text.isEmpty() ? CVariant() : CVariant(after.text)});
    }
    return changes;
}
