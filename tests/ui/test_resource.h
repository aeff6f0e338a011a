// Read by the resource compiler too, so macros only.
#pragma once

#define IDB_TEST_TRUE_COLOR 9001
#define IDB_TEST_FOUR_COLORS 9002
#define IDB_TEST_BACKGROUND 9003
