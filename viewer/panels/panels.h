// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

#include "viewer/changes.h"
#include "viewer/styled_text.h"

// The four panels as lines. Nothing here reads the system or knows what draws.

namespace mirador {

PanelText DescriptorsPanel(const View &view, const Layout &layout);
PanelText MemoryPanel(const View &view, const Layout &layout);
PanelText SignalsPanel(const View &view, const Layout &layout);
PanelText ProcessesPanel(const View &view, const Layout &layout);

/// The panel of that number.
PanelText DrawPanel(Panel panel, const View &view, const Layout &layout);

/// "10", or nothing for what has no offset.
std::string OffsetText(const OpenDescriptor &descriptor);

/// The descriptor's way to its file, safe to show.
std::string TargetText(const OpenDescriptor &descriptor, bool unicode);

/// What a zone is: its kind with the file, or the segment's key, identifier and how often it is attached.
std::string ZoneText(const Zone &zone, bool unicode);

/// A process's command line, safe to show.
std::string CommandText(const Process &process, bool unicode);

/// "SF encontrado por su marca en 0x...: ...", and a line for each file.
std::vector<std::string> FileSystemText(const FileSystem &fs, bool unicode);

/// A pipe that joins processes of a view: rows of the tree, without the shell at its root.
struct PipeThread {
    uint64_t inode = 0;
    std::vector<size_t> rows; ///< that hold an end, in order
};

/// The pipes that one process of the tree writes and another reads.
std::vector<PipeThread> JoiningPipes(const std::vector<Row<Process>> &processes);

} // namespace mirador
