#pragma once

#include <memory>

#include "common/Settings.h"
#include "common/TempFolder.h"
#include "document/project/GalleryProject.h"
#include "support/ScratchFolder.h"

// A project with a machine of its own: a program folder, a settings store, a temporary folder and pictures,
// all below one scratch folder. Layouts and styles are to be added before New, Load or Open.
class CTestProject {
public:
    CTestProject();

    QString Path(const QString& name) const { return scratch.Path(name); }
    QString ProjectPath() const { return Path(QStringLiteral("site/My.gallery")); }

    // program/Templates/NAME.xml with the page elements given, its pages in the folder NAME. Returns its key.
    QString AddLayout(const QString& name, const QByteArray& pageElements);
    // A page of that layout with so many picture places.
    void AddPage(const QString& layout, const QString& file, int slotCount);
    void AddPageText(const QString& layout, const QString& file, const QByteArray& text);
    // program/Styles/NAME.xml with css "NAME.css" and folder NAME, and more attributes. Returns its key.
    QString AddStyle(const QString& name, const QByteArray& attributes = QByteArray());
    // Layout "plain" with index.html of 4 places and the multipage picture.html of one, and style "blue".
    void AddStandard();

    // A file in the pictures folder; its bytes are no picture, which the document never finds out.
    QString MakePicture(const QString& name);
    // A file of that date, at noon.
    QString MakePicture(const QString& name, const QDate& date);
    // A new project with so many pictures "1.jpg", "2.jpg" ... in its one gallery.
    CGallery& NewGallery(int pictureCount = 0);

    // Loads a project of that XML, saved beforehand as ProjectPath.
    void LoadXml(const QByteArray& xml);

    // The entries of a gallery by file name, child galleries as "<INDEX>".
    static QString Entries(CGallery& gallery);
    QString ValueOf(CGallery& gallery, const QString& object, const QString& name);

    CScratchFolder scratch;
    std::unique_ptr<CSettingsStore> settings;
    CTempFolder tempFolder;
    CProjectEnvironment environment;
    CGalleryProject project;
};

// "text", "#" for an integer, "real:" or "date:" before a number, "empty".
QString Described(const CVariant& value);

// The caption and the description of what the call throws; "nothing" if it returns.
template <class Exception, class Call>
QString TextsOf(Call call)
{
    try {
        call();
    } catch (const Exception& error) {
        return error.GetCaption() + QLatin1Char('|') + error.GetDescription() + QLatin1Char('|') +
               error.GetAdvice();
    }
    return QStringLiteral("nothing");
}
