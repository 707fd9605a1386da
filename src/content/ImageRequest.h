#pragma once

#include <memory>

#include <QString>

class CImageEffect;

// One file that a page asks for: a source picture, the chain that leads to it, and where it goes. The chain
// is shared and immutable, so a request may outlive the page that asked.
struct ImageRequest {
    QString sourcePath;
    std::shared_ptr<const CImageEffect> effect;
    QString resultPath;
};

// Who takes the images that the pages of a run ask for.
class CImageOrders {
public:
    virtual void Ask(const ImageRequest& request) = 0;

protected:
    ~CImageOrders() = default;
};

// Makes the file at once. Throws CExceptionBase if the source can't be read or the file can't be written.
void MakeImage(const ImageRequest& request);
