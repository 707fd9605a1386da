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
      description(MakeReport(QString(), "description", QStringLiteral("Error description"))),
      reason(MakeReport(QString(), "reason", QStringLiteral("Possible reason"))),
      solution(MakeReport(QString(), "solution", QStringLiteral("Proposed solution")))
{
    MakeExterior(Text(StringId::DeployErrorTitle));
    auto* layout = new QVBoxLayout(this);
    const struct {
        QString label;
        QPlainTextEdit* text;
    } rows[] = {{QStringLiteral("&Error description:"), description},
                {QStringLiteral("Possible &reason:"), reason},
                {QStringLiteral("Proposed &solution:"), solution}};
    for (const auto& row : rows) {
        layout->addWidget(MakeLabel(row.label, *row.text));
        row.text->setFixedHeight(TextHeight);
        layout->addWidget(row.text);
    }
    layout->addStretch();
}

void CPropPageDeployError::OnShown()
{
    const DeployError error = state.error.value_or(DeployError{});
    description->setPlainText(error.description);
    reason->setPlainText(error.reason);
    solution->setPlainText(error.solution);
}
