#include <gtest/gtest.h>

#include "FolderPane.h"
