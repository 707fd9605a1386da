#pragma once

#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "document/project/GalleryProject.h"
#include "support/ProjectFixture.h"

// One random story of years with a project: pictures are added, described, turned, moved and removed; disks
// come and go, folders move, names change their case, files are replaced by others; the project is saved,
// lost in a crash, opened a second time, saved by an older version, and published. A model of what the person
// has done goes along; after each step that reads or writes, the project and the published site are held
// against it.
//
// fixture: has a layout with one picture a page. Everything happens below "story" in its folder, which is
// made anew.
class CLifeStory {
public:
    CLifeStory(CProjectFixture& fixture, uint32_t seed);

    // Empty if nothing was lost; else what was, with the steps up to there.
    std::string Tell(int steps);

private:
    // A file that the person owns. Its picture is known by its number, which its colour tells.
    struct File {
        int number;
        QString folder; // key of folders
        QString name;
    };
    // What the person has put into the gallery.
    struct Entry {
        size_t file;
        QString text;
        int angle;
        bool operator==(const Entry&) const = default;
    };
    using Entries = std::vector<Entry>;

    void MakeWorld();
    void Step();

    // What the person does in the program.
    void AddPicture();
    void AddAgain();
    void Describe();
    void Turn();
    void Move();
    void Remove();
    void Save();
    void Crash();
    void Reopen();
    void ChangeInASecondProgram();
    void SaveByAnOlderVersion();
    void SaveAs();
    void Publish();

    // What happens outside of it.
    void PlugOrUnplug();
    void MoveHome();
    void ReplaceAFile();
    void RenameAFile();
    void MakeAStranger();

    void Open();
    void Check(CGalleryProject& opened, const Entries& expected, const char* when);
    void CheckSite(const QString& site, const Entries& expected);
    std::map<QString, QByteArray> Snapshot(const QString& folder) const;
    void Fail(const QString& what);

    int Random(int below) { return static_cast<int>(random() % static_cast<uint32_t>(below)); }
    QString PathOf(const File& file) const;
    void WritePicture(const File& file) const;
    std::optional<size_t> MakeFile();
    CGallery& Gallery() { return *project->GetRootGallery(); }
    int32_t PositionOf(size_t entry);

    CProjectFixture& fixture;
    std::mt19937 random;
    const QString root;                 // with a trailing separator
    std::map<QString, QString> folders; // name to path; an empty path: unplugged
    std::map<QString, QString> unplugged;
    std::vector<File> files;
    std::set<QString> usedPlaces; // a place never has a second file: the person would mean that one
    std::map<QString, QByteArray> strangers; // in the target
    QString projectPath;
    std::unique_ptr<CGalleryProject> project;
    bool hasChild = false;
    Entries entries;   // in the program
    Entries committed; // in the file
    int nextNumber = 1;
    int homes = 0;
    std::string told;
    std::string failure;
};
