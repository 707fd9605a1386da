#include "resources/TextCatalogue.h"

#include <mutex>

namespace {

// The pointer is shared with those who are just reading a text, so that another catalogue can be installed
// meanwhile.
std::mutex installedMutex;
std::shared_ptr<const CTextCatalogue> installed;

} // namespace

void InstallTextCatalogue(std::shared_ptr<const CTextCatalogue> catalogue)
{
    const std::lock_guard lock(installedMutex);
    installed.swap(catalogue); // the former one ends after the lock
}

std::shared_ptr<const CTextCatalogue> FindTextCatalogue()
{
    const std::lock_guard lock(installedMutex);
    return installed;
}
