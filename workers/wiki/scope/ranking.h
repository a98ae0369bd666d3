// Which declarations of a page matter most, and which of them it can afford to show.
//
//   ranked_files.h   rank_key           the sort key of one declaration
//                    ranked_by_file     each file's declarations, best first
//                    file_seeds         one citable line range for each file
//   selection.h      select_with_quota  the declarations that get a block: every file represented, none taking too much
//                    pick_spread        the names that get a deeper treatment, spread over the files
#pragma once

#include "workers/wiki/scope/ranked_files.h"
#include "workers/wiki/scope/selection.h"
