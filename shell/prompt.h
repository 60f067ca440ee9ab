// SPDX-License-Identifier: MIT

#pragma once

// The prompt: a specification in which "%" and a letter stand for a piece of the shell's situation.

/// The text that replaces escape `c`, or null when `c` is no escape. Valid until the same piece is asked
/// again.
const char *CadenaEquivalente(char c);

/// The prompt that `spec` gives, or null: an escape that does not exist, or `spec` or the prompt would pass
/// 1023 characters.
const char *SetPrompt(const char *spec);

/// Makes `spec` (at most 1023 characters, the rest is cut) what prompts are formed from, from now on.
void SetPromptSpec(const char *spec);

/// Prints the prompt of the stored specification, cut at 1023 characters when it has grown past them.
void PrintPrompt();

/// Prints the stored specification.
void PrintPromptSpec();

// The pieces; each text is valid until the next call of the same function.
const char *UserName();            ///< login name of the effective user
const char *MachineName();         ///< node name up to its first dot
const char *OSName();              ///< system name
const char *ShellPid();            ///< process id of the shell in decimal
const char *Directory();           ///< current directory, links resolved
const char *DirectoryLast();       ///< last component of the current directory
const char *DirectoryContracted(); ///< current directory with the home prefix shown as "~"
