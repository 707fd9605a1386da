#include "shell/wizard/PropPageDeployDoubts.h"

#include <utility>

#include <QCheckBox>
#include <QListWidget>
#include <QVBoxLayout>

#include "ftpengine/destinations/FTPDestinations.h"
#include "resources/StringTable.h"
#include "shell/look/DialogParts.h"

namespace {

QStringList MissingFiles(const DeployDoubts& doubts)
{
    QStringList paths;
    for (const UnusableFile& picture : doubts.absentPictures) {
        paths += picture.path;
    }
    for (const UnusableFile& watermark : doubts.unreadableWatermarks) {
        paths += Text(StringId::DoubtfulWatermark, watermark.path);
    }
    return paths;
}

} // namespace

CPropPageDeployDoubts::CPropPageDeployDoubts(DeployWizardState& state)
    : CWizardPage(state),
      missing(MakeQuestion("missing", Text(StringId::MissingFilesName), Text(StringId::LeaveMissingOut))),
      strangers(
          MakeQuestion("strangers", Text(StringId::StrangersFilesName), Text(StringId::OverwriteStrangers)))
{
    MakeInterior(Text(StringId::DeployDoubtsTitle), Text(StringId::DeployDoubtsSubtitle));
    auto* layout = new QVBoxLayout(this);
    for (const Question& question : {missing, strangers}) {
        layout->addWidget(question.label);
        layout->addWidget(question.files);
        layout->addWidget(question.agreed);
        layout->addSpacing(6);
    }
    layout->addStretch();
}

CPropPageDeployDoubts::Question
CPropPageDeployDoubts::MakeQuestion(const char* name, const QString& filesName, const QString& agreement)
{
    const Question question{new QLabel(this), new QListWidget(this), new QCheckBox(agreement, this)};
    question.label->setWordWrap(true);
    NameControl(*question.files, name, filesName);
    question.files->setSelectionMode(QAbstractItemView::NoSelection);
    question.files->setTextElideMode(Qt::ElideMiddle); // the end of a path tells the most
    question.agreed->setObjectName(QString::fromLatin1(name) + QStringLiteral("Agreed"));
    connect(question.agreed, &QCheckBox::toggled, this, &QWizardPage::completeChanged);
    return question;
}

void CPropPageDeployDoubts::Show(const Question& question, const QString& label, const QStringList& files)
{
    question.label->setText(label);
    question.files->clear();
    question.files->addItems(files);
    for (int i = 0; i < files.size(); ++i) {
        question.files->item(i)->setToolTip(files[i]);
    }
    question.agreed->setChecked(false);
    for (QWidget* widget : {static_cast<QWidget*>(question.label), static_cast<QWidget*>(question.files),
                            static_cast<QWidget*>(question.agreed)}) {
        widget->setVisible(!files.isEmpty());
    }
}

void CPropPageDeployDoubts::OnShown()
{
    hasInterrupted = std::exchange(state.isUndecided, false);
    const DeployDoubts& doubts = state.doubts;
    const QStringList files = MissingFiles(doubts);
    Show(missing, Text(StringId::MissingFilesQuestion, static_cast<int>(files.size())), files);
    Show(strangers,
         Text(StringId::StrangersFilesQuestion, static_cast<int>(doubts.strangeFiles.size()), GetTarget()),
         doubts.strangeFiles);
    missing.agreed->setChecked(state.leaveOutMissing);
    Q_EMIT completeChanged(); // the wizard has asked before
}

bool CPropPageDeployDoubts::IsForServer() const
{
    return state.settings.destination_kind != 0;
}

QString CPropPageDeployDoubts::GetTarget() const
{
    if (!IsForServer()) {
        return state.settings.folder;
    }
    return state.Destinations().Load(state.settings.ftp_destination).connection.server + QLatin1Char('/') +
           state.settings.ftp_directory;
}

int CPropPageDeployDoubts::nextId() const
{
    return IsForServer() ? DeployPageId::DeployToFTP : DeployPageId::DeployToFolder;
}

bool CPropPageDeployDoubts::IsDecided(const Question& question)
{
    return question.files->count() == 0 || question.agreed->isChecked();
}

bool CPropPageDeployDoubts::isComplete() const
{
    return IsDecided(missing) && IsDecided(strangers);
}

bool CPropPageDeployDoubts::validatePage()
{
    state.leaveOutMissing = state.doubts.IsAnyMissing();
    state.overwrite = !state.doubts.strangeFiles.empty();
    state.goesOn = hasInterrupted;
    return true;
}
