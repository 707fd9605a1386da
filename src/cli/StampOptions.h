#pragma once

#include <vector>

#include <QStringList>

#include "effects/StampParams.h"

class CGallery;
struct CommandArguments;

// What "new" lays over the pictures of its galleries: --watermark, --signature, and where they go.
class CStampOptions {
public:
    // Options with a value, for the syntax of a command.
    static QStringList GetNames();

    // Throws CWrongUse for values that are none and for a place without a stamp, CFileException for a
    // watermark that doesn't exist and CGenericException for one that can't be read.
    explicit CStampOptions(const CommandArguments& arguments);

    void ApplyTo(CGallery& gallery) const;

private:
    CImageStampParams watermark;
    CTextStampParams signature;
    std::vector<size_t> sizeClasses;
};
