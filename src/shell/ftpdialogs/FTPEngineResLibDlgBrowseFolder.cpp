#include "shell/ftpdialogs/FTPEngineResLibDlgBrowseFolder.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "common/MessageTarget.h"
#include "ftpengine/destinations/FTPDestinations.h"
#include "ftpengine/messages/EngineStatus.h"
#include "resources/StringTable.h"
#include "shell/ftpdialogs/DlgTroubleshootList.h"
#include "shell/ftpdialogs/EngineRetirement.h"
#include "shell/ftpdialogs/FTPEngineResLibDlgTaskResult.h"
#include "shell/ftpdialogs/FolderBrowsing.h"
#include "shell/ftpdialogs/ServerQuestion.h"
#include "shell/look/DialogParts.h"
#include "shell/look/Icons.h"

namespace {

constexpr int KindRole = Qt::UserRole;
constexpr int ColumnWidth = 300;
constexpr std::chrono::milliseconds DotInterval{1000};
constexpr std::chrono::milliseconds QuietLimit{60000};

} // namespace

CFTPEngineResLibDlgBrowseFolder::CFTPEngineResLibDlgBrowseFolder(CFTPDestination& destination,
                                                                 bool troubleshooting, QWidget* parent,
                                                                 const Access& access)
    : QDialog(parent),
      destination(destination),
      troubleshooting(troubleshooting),
      trustFolder(access.trustFolder),
      currentPath(destination.connection.directory),
      list(new QTreeWidget(this)),
      url(new QLineEdit(this)),
      engine(std::make_unique<CFTPEngine>(access.timeouts, access.trustFolder))
{
    setWindowTitle(Text(StringId::BrowseFolderTitle));
    MakeControls();
    dots.setObjectName(QStringLiteral("dots"));
    dots.setInterval(DotInterval);
    connect(&dots, &QTimer::timeout, this, &CFTPEngineResLibDlgBrowseFolder::OnDot);
    quiet.setSingleShot(true);
    quiet.setInterval(QuietLimit);
    connect(&quiet, &QTimer::timeout, this, [this] {
        CTaskResult late;
        late.status = EngineStatus::TimedOut;
        Listen();
        OnChangeFinished(late);
    });
    Listen();
    List();
}

CFTPEngineResLibDlgBrowseFolder::~CFTPEngineResLibDlgBrowseFolder()
{
    RetireEngine(std::move(engine));
}

void CFTPEngineResLibDlgBrowseFolder::MakeControls()
{
    const QString urlLabel = Text(StringId::FolderAddressLabel);
    NameControl(*list, "folders", Text(StringId::Folders));
    NameControl(*url, "url", urlLabel);
    list->setHeaderLabel(Text(StringId::Folders));
    list->header()->setStretchLastSection(false);
    list->header()->resizeSection(0, ColumnWidth);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setEditTriggers(QAbstractItemView::EditKeyPressed);
    list->setItemDelegate(new CFolderLabelDelegate(
        [this](const QPersistentModelIndex& row, const QString& text) { OnLabelEdited(row, text); }, list));
    connect(list, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* row) { OnActivated(row); });
    url->setReadOnly(true);

    auto* layout = new QVBoxLayout(this);
    auto* urlRow = new QHBoxLayout;
    urlRow->addWidget(MakeLabel(urlLabel, *url));
    urlRow->addWidget(url);
    layout->addWidget(list);
    layout->addLayout(urlRow);
    MakeButtons();
    resize(420, 400);
    list->setFocus();
}

void CFTPEngineResLibDlgBrowseFolder::MakeButtons()
{
    newFolder = MakeButton(Text(StringId::NewFolderButton), "newFolder", this);
    ok = MakeButton(Text(StringId::OkButton), "ok", this);
    QPushButton* cancel = MakeButton(Text(StringId::CancelButton), "cancel", this);
    QPushButton* troubleshoot = MakeButton(Text(StringId::TroubleshootButton), "troubleshoot", this);
    ok->setEnabled(false);
    newFolder->setEnabled(false);
    troubleshoot->setVisible(troubleshooting);
    connect(newFolder, &QPushButton::clicked, this, &CFTPEngineResLibDlgBrowseFolder::OnNewFolder);
    connect(new QShortcut(QKeySequence(QStringLiteral("Ctrl+N")), this), &QShortcut::activated, newFolder,
            &QPushButton::click);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(troubleshoot, &QPushButton::clicked, this,
            [this] { CDlgTroubleshootList(rawListing, this).exec(); });

    auto* row = new QHBoxLayout;
    row->addWidget(newFolder);
    row->addWidget(troubleshoot);
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    qobject_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void CFTPEngineResLibDlgBrowseFolder::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QDialog::keyPressEvent(event);
    } else if (auto* button = qobject_cast<QPushButton*>(focusWidget())) {
        button->click();
    }
}

void CFTPEngineResLibDlgBrowseFolder::Listen()
{
    target = CEventLoopTarget<FTPMessage>::Create([this](const FTPMessage& message) { OnMessage(message); });
}

void CFTPEngineResLibDlgBrowseFolder::OnMessage(const FTPMessage& message)
{
    StayPatient();
    if (std::holds_alternative<FTP_LIST_STARTED>(message)) {
        OnListStarted();
    } else if (const auto* listed = std::get_if<FTP_LIST_FINISHED>(&message)) {
        OnListFinished(*listed);
    } else if (const auto* created = std::get_if<FTP_CREATE_FINISHED>(&message)) {
        OnChangeFinished(created->result);
    } else if (const auto* renamed = std::get_if<FTP_RENAME_FINISHED>(&message)) {
        OnChangeFinished(renamed->result);
    }
}

// The wait is for a minute without anything, not for a minute in all.
void CFTPEngineResLibDlgBrowseFolder::StayPatient()
{
    if (change) {
        quiet.start(QuietLimit);
    }
}

// Of the whole program, while a change is waited for: the dialog's own controls hear nothing then.
bool CFTPEngineResLibDlgBrowseFolder::eventFilter(QObject* watched, QEvent* event)
{
    if (dynamic_cast<QInputEvent*>(event)) {
        StayPatient();
    }
    return QDialog::eventFilter(watched, event);
}

void CFTPEngineResLibDlgBrowseFolder::List()
{
    busy = true; // from now on, so that a second listing can't be asked for
    ok->setEnabled(false);
    newFolder->setEnabled(false);
    engine->GetDirectoryContent(destination.connection, target);
}

void CFTPEngineResLibDlgBrowseFolder::OnListStarted()
{
    list->clear();
    AddRow(Text(StringId::GettingFolders), Waiting);
    dots.start();
}

void CFTPEngineResLibDlgBrowseFolder::OnDot()
{
    if (QTreeWidgetItem* row = list->topLevelItem(0)) {
        row->setText(0, WithOneMoreDot(row->text(0)));
    }
}

void CFTPEngineResLibDlgBrowseFolder::OnListFinished(const FTP_LIST_FINISHED& message)
{
    dots.stop();
    busy = false;
    if (message.content) {
        const QString path = NormalisedPath(message.content->GetDirectory());
        destination.connection.directory = path;
        currentPath = path;
        FillList(*message.content);
        ShowUrl();
    } else if (!message.result.IsSuccess()) {
        OnListFailed(message.result);
    }
}

void CFTPEngineResLibDlgBrowseFolder::OnListFailed(const CTaskResult& result)
{
    if (IsServerQuestion(result.status)) {
        // The directory that was asked for is still the one that is wanted.
        if (AskAboutServer({result.status, result.identity, trustFolder}, destination.connection, this)) {
            List();
            return;
        }
        destination.connection.directory = currentPath;
    } else {
        destination.connection.directory = currentPath;
        ShowResult(result);
    }
    list->clear();
    ok->setEnabled(false);
    ShowUrl();
}

void CFTPEngineResLibDlgBrowseFolder::FillList(const CFTPDirectoryContent& content)
{
    if (troubleshooting) {
        rawListing = content.GetListing();
    }
    list->clear();
    if (!currentPath.isEmpty()) {
        AddRow(Text(StringId::FolderAbove), WayUp);
    }
    for (const CFTPDirectoryItem& item : content.GetItems()) {
        if (item.isDirectory) {
            AddRow(item.name, ExistingFolder);
        }
    }
    list->setCurrentItem(list->topLevelItem(0));
    ok->setEnabled(true);
    newFolder->setEnabled(true);
}

QTreeWidgetItem* CFTPEngineResLibDlgBrowseFolder::AddRow(const QString& text, RowKind kind)
{
    auto* row = new QTreeWidgetItem(list, {text});
    row->setData(0, KindRole, kind);
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (kind == ExistingFolder || kind == FolderUnderNaming) {
        flags |= Qt::ItemIsEditable;
    }
    row->setFlags(flags);
    row->setIcon(0, LoadIcon(kind == WayUp     ? QStringLiteral("folder-up")
                             : kind == Waiting ? QStringLiteral("waiting")
                                               : QStringLiteral("folder")));
    return row;
}

void CFTPEngineResLibDlgBrowseFolder::ShowUrl()
{
    url->setText(GetURL(destination.connection));
    url->setCursorPosition(0);
}

void CFTPEngineResLibDlgBrowseFolder::ShowResult(const CTaskResult& result)
{
    CFTPEngineResLibDlgTaskResult(result, this).exec();
}

void CFTPEngineResLibDlgBrowseFolder::OnActivated(QTreeWidgetItem* row)
{
    if (!busy && !change) {
        QString& directory = destination.connection.directory;
        directory = EnteredPath(directory, row->text(0));
        List();
    }
}

void CFTPEngineResLibDlgBrowseFolder::OnNewFolder()
{
    if (busy) {
        return;
    }
    QTreeWidgetItem* row = AddRow(Text(StringId::NewFolder), FolderUnderNaming);
    list->setFocus();
    list->setCurrentItem(row);
    list->editItem(row);
}

void CFTPEngineResLibDlgBrowseFolder::OnLabelEdited(const QPersistentModelIndex& index, const QString& text)
{
    QTreeWidgetItem* row = list->itemFromIndex(index);
    if (!row || busy || change) {
        return;
    }
    const bool isNew = row->data(0, KindRole).toInt() == FolderUnderNaming;
    if (text.isEmpty()) {
        if (isNew) {
            delete row;
        }
        return;
    }
    if (isNew) {
        engine->CreateDirectory(destination.connection, text, target);
    } else if (text != row->text(0)) {
        engine->RenameDirectory(destination.connection, row->text(0), text, target);
    } else {
        return;
    }
    change = Change{index, text};
    SetChanging(true);
}

void CFTPEngineResLibDlgBrowseFolder::OnChangeFinished(const CTaskResult& result)
{
    const Change finished = *change;
    change.reset();
    SetChanging(false);
    if (!result.IsSuccess()) {
        ShowResult(result);
    } else if (QTreeWidgetItem* row = list->itemFromIndex(finished.row)) {
        row->setData(0, KindRole, ExistingFolder);
        row->setText(0, finished.name);
    }
}

void CFTPEngineResLibDlgBrowseFolder::SetChanging(bool isChanging)
{
    isChanging ? quiet.start() : quiet.stop();
    isChanging ? qApp->installEventFilter(this) : qApp->removeEventFilter(this);
    for (QWidget* control :
         {static_cast<QWidget*>(list), static_cast<QWidget*>(ok), static_cast<QWidget*>(newFolder)}) {
        control->setEnabled(!isChanging);
    }
    isChanging ? setCursor(Qt::BusyCursor) : unsetCursor();
    if (!isChanging) {
        list->setFocus();
    }
}
