#pragma once

#include <memory>
#include <optional>

#include <QDialog>
#include <QPersistentModelIndex>
#include <QTimer>

#include "ftpengine/FTPEngine.h"
#include "ftpengine/destinations/FTPDestination.h"

class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

// Chooses a folder on a server by walking through its folders, which can be renamed and made on the way. Has
// an engine of its own; a listing or change that is under way when the dialog closes is cancelled.
class CFTPEngineResLibDlgBrowseFolder final : public QDialog {
    Q_OBJECT

public:
    // How the server is reached.
    struct Access {
        FTPTimeouts timeouts = {};
        QString trustFolder = {}; // SessionSetting.h
    };

    // destination: borrowed; its directory follows the browsing, whether the dialog ends with OK or not, and
    // its protocol what the person agrees to. troubleshooting: with a button that shows a listing as it came.
    CFTPEngineResLibDlgBrowseFolder(CFTPDestination& destination, bool troubleshooting, QWidget* parent,
                                    const Access& access);
    CFTPEngineResLibDlgBrowseFolder(CFTPDestination& destination, bool troubleshooting, QWidget* parent)
        : CFTPEngineResLibDlgBrowseFolder(destination, troubleshooting, parent, Access())
    {}
    ~CFTPEngineResLibDlgBrowseFolder() override;

protected:
    // Enter presses a button only where that has the focus; in the list it enters a folder.
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum RowKind { ExistingFolder = 0, FolderUnderNaming = 1, WayUp = 2, Waiting = 3 };

    void MakeControls();
    void MakeButtons();

    // From now on, messages of earlier tasks are not heard.
    void Listen();
    void OnMessage(const FTPMessage& message);
    void OnListStarted();
    void OnListFinished(const FTP_LIST_FINISHED& message);
    void OnListFailed(const CTaskResult& result);
    void OnDot();
    void OnActivated(QTreeWidgetItem* row);
    void OnNewFolder();
    void OnLabelEdited(const QPersistentModelIndex& index, const QString& text);
    void OnChangeFinished(const CTaskResult& result);

    void StayPatient();
    void List();
    void FillList(const CFTPDirectoryContent& content);
    QTreeWidgetItem* AddRow(const QString& text, RowKind kind);
    void ShowUrl();
    void ShowResult(const CTaskResult& result);
    void SetChanging(bool isChanging);

    CFTPDestination& destination;
    const bool troubleshooting;
    const QString trustFolder;
    QString currentPath; // listed successfully last
    QString rawListing;
    bool busy = false; // while a listing runs

    // A folder that the server is asked to make or to rename.
    struct Change {
        QPersistentModelIndex row;
        QString name;
    };
    std::optional<Change> change;

    QTreeWidget* list;
    QLineEdit* url;
    QPushButton* newFolder = nullptr;
    QPushButton* ok = nullptr;
    QTimer dots{this};
    QTimer quiet{this}; // limits how long a change is waited for without any event

    std::shared_ptr<CFTPTarget> target;
    std::unique_ptr<CFTPEngine> engine;
};
