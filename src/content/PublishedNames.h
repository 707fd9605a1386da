#pragma once

#include <map>

#include <QString>

class CPictureInfo;

// The image files of one output folder, and what each is made of, so that no file is asked to show two
// pictures. The names that the pictures of a gallery have by themselves are kept apart already, see
// CPictureNames; what is left comes of sizes ("p1" in 32 by 32 and "p" in 132 by 32 pixels), of stamps and of
// covers. Servers may not tell capitals apart, so names don't either. Generation thread.
class CPublishedNames {
public:
    struct Image {
        QString wantedPath;
        QString sourcePath;
        QString key;                     // of the chain
        CPictureInfo* picture = nullptr; // null where none belongs to it
    };

    // The path that is the image's own. A second source gets its picture's suffix, which the picture keeps
    // from then on.
    QString Claim(const Image& image);
    // For the next folder.
    void Clear() { owners.clear(); }

private:
    struct Owner {
        QString sourcePath;
        QString key;
    };
    bool IsFree(const QString& path, const Image& image);

    std::map<QString, Owner> owners; // by lower-cased path
};
