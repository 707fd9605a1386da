#include "shell/wizard/PropPageDeployError.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

constexpr int TextHeight = 76; // pixels: four lines; a longer text scrolls

} // namespace

CPropPageDeployError::CPropPageDeployError(DeployWizardState& state)
    : CWizardPage(state),
      description(MakeReport(QString(), "description", Text(StringId::ErrorDescriptionLabel))),
      reason(MakeReport(QString(), "reason", Text(StringId::ErrorReasonLabel))),
      solution(MakeReport(QString(), "solution", Text(StringId::ErrorSolutionLabel)))
{
    MakeExterior(Text(StringId::DeployErrorTitle));
    auto* layout = new QVBoxLayout(this);
    const struct {
        QString label;
        QPlainTextEdit* text;
    } rows[] = {{Text(StringId::ErrorDescriptionLabel), description},
                {Text(StringId::ErrorReasonLabel), reason},
                {Text(StringId::ErrorSolutionLabel), solution}};
    for (const auto& row : rows) {
        layout->addWidget(MakeLabel(row.label, *row.text));
        row.text->setFixedHeight(TextHeight);
        layout->addWidget(row.text);
    }
    layout->addStretch();
}

void CPropPageDeployError::OnShown()
{
    const DeployFailure error = state.error.value_or(DeployFailure{});
    description->setPlainText(error.caption);
    reason->setPlainText(error.description);
    solution->setPlainText(error.advice);
}
