#pragma once

#include <cstdint>
#include <functional>
#include <set>

#include <QString>

class CGalleryProject;

// One change of the document that a person makes: a value, made where the person asks for it and applied by
// CEditHistory, which can take it back. PictureActs.h, TextActs.h, LookActs.h and GalleryActs.h make all that
// there are.
struct Act {
    QString name; // for the menu, after "Undo": "Delete Picture"
    // The galleries that it may change or remove, by index. Those that it makes are found out.
    std::set<int32_t> galleries;
    // May throw CExceptionBase; nothing has changed then.
    std::function<void(CGalleryProject& project)> apply;
    // What a person should know at once and may want to take back: "3 pictures deleted". Empty for most.
    QString notice = {};
};
