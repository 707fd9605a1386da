#pragma once

#include <cstdint>
#include <deque>
#include <random>
#include <string>

#include "../document/TestProject.h"
#include "editing/EditHistory.h"

// A random run of acts over a project, some of them taken back and done anew on the way, and some pages
// looked at in between. At the end all that can be is taken back and done anew twice, and the project's file
// is compared with what it was, byte for byte, at each step.
class CEditStory {
public:
    explicit CEditStory(uint32_t seed);

    // Empty if all was well; else what went wrong, in words.
    std::string Tell(int acts);

private:
    // The file around one step of the history.
    struct Step {
        QString name;
        QByteArray before;
        QByteArray after;
    };

    bool Chance(int oneIn) { return Below(oneIn) == 0; }
    int Below(int limit) { return limit > 0 ? static_cast<int>(random() % static_cast<uint32_t>(limit)) : 0; }
    int32_t SomeGallery();
    int32_t SomePosition(int32_t gallery);
    std::vector<int32_t> SomePositions(int32_t gallery);
    QStringList SomePaths();
    QString SomeWord();

    Act SomeAct();
    Act SomePictureAct(int32_t gallery);
    Act SomeTextAct(int32_t gallery);
    Act SomeLookAct(int32_t gallery);
    Act SomeGalleryAct(int32_t gallery);
    void LookAround();
    void Do();
    void Undo();
    void Redo();
    void Compare(const QByteArray& expected, const QString& what);
    QByteArray Bytes();

    std::mt19937 random;
    // The page that a person looks at stands in the file, too, and is no act: it is left out of the
    // comparison.
    const bool looksAround;
    CTestProject test;
    QStringList pictures;
    std::deque<Step> steps; // as many as the history keeps
    size_t place = 0;       // in the steps: how many of them are done
    Edited heard;
    CEditHistory history;
    std::string wrong;
};
