// SPDX-License-Identifier: MIT

#pragma once

/// Deletes the directory `dir` with everything in it, depth first, and stops at the first failure: what is
/// gone by then stays gone. Links are deleted, never followed, and nothing outside the tree is touched, even
/// when its directories are moved or turned into links meanwhile.
///
/// Returns 0, or -1 with the `errno` of the step that failed: ENOTDIR when `dir` is a link (a slash behind it
/// does not change that), EINVAL or ENOTEMPTY when its last component is "." or ".." (nothing is deleted),
/// ESTALE when a directory was moved away while it was being emptied, ENAMETOOLONG when the tree is more than
/// 10000 directories deep, or 1 for each KiB of a smaller stack.
int BorrarDirectorio(const char *dir);
