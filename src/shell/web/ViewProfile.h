#pragma once

#include <map>
#include <memory>

#include <QByteArray>
#include <QString>
#include <QWebEngineProfile>

class QWebEngineUrlRequestJob;

// A view as the source of what its pages ask for. Screen's thread.
class CPageSource {
public:
    // The bytes of the page; null if there is no such revision.
    virtual QByteArray FindPage(int revision) const = 0;
    // The charset of pages that name none.
    virtual QByteArray GetDefaultCharset() const = 0;
    // Whether a page may show the file.
    virtual bool IsShown(const QString& filePath) const = 0;
    // A page has got the file.
    virtual void NoteServed(const QString& filePath) = 0;

protected:
    ~CPageSource() = default;
};

// The browser's one profile: nothing of it is kept, on the disk or elsewhere, and nothing is asked of any
// network. It serves the pages of the views, their files and the program's artwork. Shared by the views, and
// gone with the last of them; screen's thread.
class CViewProfile final {
public:
    static std::shared_ptr<CViewProfile> Get();
    ~CViewProfile();
    CViewProfile(const CViewProfile&) = delete;
    CViewProfile& operator=(const CViewProfile&) = delete;

    QWebEngineProfile& GetProfile() { return *profile; }

    // The name of the view in the addresses of its pages. The source is borrowed until RemoveView.
    QString AddView(CPageSource& source);
    void RemoveView(const QString& view);
    // Null if the view is gone.
    CPageSource* FindView(const QString& view) const;

private:
    CViewProfile();

    std::map<QString, CPageSource*> views;
    int lastView = 0;
    std::unique_ptr<QObject> pageHandler;
    std::unique_ptr<QObject> artworkHandler;
    std::unique_ptr<QObject> interceptor;
    std::unique_ptr<QWebEngineProfile> profile; // goes before its handlers
};

// Names the schemes to the browser. Before the application object is made.
void RegisterViewSchemes();
