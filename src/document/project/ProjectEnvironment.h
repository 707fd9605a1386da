#pragma once

#include <QString>

#include "document/cover/CoverCache.h"

class CSettingsStore;
class CTempFolder;

// What a project needs of the machine that it is opened on. The pointers are borrowed, are not null and
// outlive the project.
struct CProjectEnvironment {
    QString programFolder;  // holds Templates, Styles and banner.swf; with or without a trailing separator
    QString picturesFolder; // the user's own; the first folder of a new project
    CSettingsStore* settings = nullptr;
    CTempFolder* tempFolder = nullptr; // takes the covers
    CCoverCache::Options covers = {};  // where they are kept between runs
};
