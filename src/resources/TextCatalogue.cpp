#include "resources/TextCatalogue.h"

#include <mutex>

namespace {

struct Installed {
    std::mutex mutex;
    // Guarded by mutex. Shared with those who are just reading a text, so that another one can be installed
    // meanwhile.
    std::shared_ptr<const CTextCatalogue> catalogue;
};

// Never destroyed: a worker that was abandoned may ask for a text while the program ends.
Installed& TheInstalled()
{
    static auto* const installed = new Installed;
    return *installed;
}

} // namespace

void InstallTextCatalogue(std::shared_ptr<const CTextCatalogue> catalogue)
{
    Installed& installed = TheInstalled();
    const std::lock_guard lock(installed.mutex);
    installed.catalogue.swap(catalogue); // the former one ends after the lock
}

std::shared_ptr<const CTextCatalogue> FindTextCatalogue()
{
    Installed& installed = TheInstalled();
    const std::lock_guard lock(installed.mutex);
    return installed.catalogue;
}
