#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <QString>

#include "resources/StringTable.h"

class CPictureMenuCommandGenerator;

// One button of a strip.
struct CPictureMenuItem {
    int32_t command = 0;
    QString stripPath; // the strip with this button lit
    QString tooltip;
};

// The strip of buttons of one kind of object in a page of the screen: one picture with no button lit, and one
// for each button lit. The picture files are made once per machine. Owned by a generator; screen's thread.
class CPictureMenu {
public:
    struct Row {
        int32_t bitmap;    // the button at rest; its number is also that of the command
        int32_t litBitmap; // under the mouse
        StringId tooltip;
    };

    // temporaryFolder: with a trailing separator. A strip that can't be made is missing from the page,
    // without a message.
    CPictureMenu(const QString& temporaryFolder, const std::vector<Row>& rows);

    // The strip's images for the object id, to stand before it.
    void WriteMenuImages(std::ostream& out, const std::string& id,
                         const CPictureMenuCommandGenerator& generator) const;
    // What the object itself carries in its tag. Every menu writes the same.
    static void WriteMenuAttributes(std::ostream& out, const std::string& id);

private:
    struct Strip {
        const QString& path;
        QString command; // empty: the strip at rest
        QString tooltip;
    };
    static void WriteImage(std::ostream& out, const std::string& id, const Strip& strip);

    std::vector<CPictureMenuItem> items;
    QString stripPath; // no button lit
};
