#pragma once

#include <cstdint>

// The row of page numbers in a navigation table: the pages from FirstPageOfWindow while below EndOfWindow.
// maxPages: the most pages in the row; current, total: page index from 0 and count of pages. A negative
// maxPages, converted to unsigned, is a huge number: the row then lists all pages. Nothing divides by zero:
// for a total of 0 both answer 0. Thread-safe.

uint32_t FirstPageOfWindow(uint32_t maxPages, uint32_t current, uint32_t total);

// One after the last page of the row.
uint32_t EndOfWindow(uint32_t maxPages, uint32_t current, uint32_t total);
