#include "template/contracts/NavigationWindow.h"

namespace {

// Pages of the row in front of the current one, for a row that is shorter than the gallery.
uint32_t PagesBeforeCurrent(uint32_t maxPages, uint32_t current, uint32_t total)
{
    // The current page stands at the same relative place in the row as in the gallery.
    const uint32_t offset = maxPages * current / total;
    if (offset == 0 && current != 0) {
        return 1; // a page other than the first has a neighbour on its left, even if only the neighbour fits
    }
    if (offset == maxPages - 1 && current != total - 1) {
        // A page other than the last has a neighbour on its right. With room for one page, the first page's
        // offset wraps round and the row shows page 1: odd on purpose, published rows stay as they are.
        return maxPages - 2;
    }
    return offset;
}

} // namespace

uint32_t FirstPageOfWindow(uint32_t maxPages, uint32_t current, uint32_t total)
{
    if (maxPages >= total) {
        return 0;
    }
    const uint32_t first = current - PagesBeforeCurrent(maxPages, current, total);
    if (first != 0 && first + maxPages >= total) {
        return total - maxPages;
    }
    return first;
}

uint32_t EndOfWindow(uint32_t maxPages, uint32_t current, uint32_t total)
{
    const uint32_t first = FirstPageOfWindow(maxPages, current, total);
    // Compared without a sum, which would wrap round for a huge maxPages.
    const bool isCut = first < total && total - first > maxPages;
    return isCut ? first + maxPages : total;
}
