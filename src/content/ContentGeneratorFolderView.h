#pragma once

#include "content/ContentGeneratorViews.h"
#include "content/PictureMenu.h"

// Writes the rows of the folder view: a thumbnail each, with its buttons. Lives for one pass; screen's
// thread.
class CContentGeneratorFolderView final : public CContentGeneratorViews {
public:
    // temporaryFolder: where the strips are kept, with a trailing separator.
    explicit CContentGeneratorFolderView(const QString& temporaryFolder);

    // One row of a table. A row with an empty href is not linked. Width and height are not used: the file
    // under the cursor has the size of the card already.
    void GeneratePicture(CImageIterator& iterator, const PictureAttributes& picture,
                         std::ostream& out) override;

protected:
    void WritePictureMenu(std::ostream& out, const std::string& id) override;

private:
    const CPictureMenu pictureMenu;
};
