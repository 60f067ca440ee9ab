// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <utility>

#include "viewer/snapshot.h"

namespace mirador {

/// Keeps to a shell through its forks, its execs and its end.
class Follower {
  public:
    explicit Follower(pid_t pid);

    /// The state now; once the shell has ended, its last one with `alive` false. measure: read smaps too;
    /// without it, zones that are as they were keep what was measured.
    Snapshot Next(bool measure);

    /// Looks at another shell of the tree, as the user wishes.
    void Switch();

    /// What became of the shell, in one line, said once; empty when there is nothing to say.
    std::string TakeMessage() { return std::exchange(message_, {}); }

    /// What to ask a ChangeDetector for, with last().processes.
    const Request &request() const { return request_; }
    const Snapshot &last() const { return last_; }

  private:
    bool GoBack();
    void FollowFork(const Snapshot &snapshot);
    Request request_;
    Snapshot last_;
    std::string message_;
    bool chosen_ = false; ///< the user has: no fork is followed
};

} // namespace mirador
