#include "shell/wizard/PropPageDeployError.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "resources/StringTable.h"
#include "shell/dialogs/DialogParts.h"

namespace {

constexpr int MinimumHeight = 48; // pixels: two lines

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
        // They share what room there is.
        row.text->setMinimumHeight(MinimumHeight);
        row.text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
        layout->addWidget(row.text);
    }
}

void CPropPageDeployError::OnShown()
{
    const DeployError error = state.error.value_or(DeployError{});
    description->setPlainText(error.description);
    reason->setPlainText(error.reason);
    solution->setPlainText(error.solution);
}
