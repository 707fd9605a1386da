#pragma once

#include <map>

#include <QString>

class CPictureInfo;

// The names that the files of a list's pictures are published under, before anything is put to them for sizes
// and stamps, so that no two pictures of a list share one: neither "a.png" and "a.bmp", which both become
// ".png", nor "a b" and "a10b", which are one name when it is cleaned, nor a turned "Tor.jpg" and a real
// "Tor_r1.jpg". Servers may not tell capitals apart, so names don't either. Who has a name first keeps it,
// whatever the order of the list becomes; a newcomer gets a suffix, which stays with it. Part of its list.
//
// Covers are left out: their names follow from what they show, and change with it.
class CPictureNames {
public:
    // For a picture that has come in, and for one whose path, angle or suffix has changed: gives it a suffix
    // if its name is another picture's.
    void Claim(CPictureInfo& record);
    void Release(const CPictureInfo& record);
    void Clear();

private:
    std::map<QString, const CPictureInfo*> owners; // by lower-cased name
    std::map<const CPictureInfo*, QString> names;
};

// "_" and six hexadecimal digits, for a picture by its path and for a child gallery by its index: the same in
// each run. attempt: for another one where the first is taken.
QString NameSuffixFor(const CPictureInfo& record, int attempt = 0);

// The same for any text.
QString NameSuffixFor(const QString& text, int attempt = 0);
