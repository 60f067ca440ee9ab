// SPDX-License-Identifier: MIT

#pragma once

// Redirection of the shell's own standard streams to files and back. Streams are 0 (input), 1 (output) and 2
// (error). What is printed and not yet written must go out before any of this is called.

/// 1 between InitRedir, when it saved something, and ClearRedir; else 0.
int HayRedireccion();

/// Saves a copy of every standard descriptor that is open, as its initial configuration.
void InitRedir();

/// Redirects a stream: the input from an existing file (opened for reading and writing), the others to the
/// end of a file, created when missing. Returns 0, or -1 with nothing changed: EBADF (the stream was closed
/// when redirection was initialised) or the `errno` of open().
int DoRedir(int flujo, const char *fichero);

/// Gives a stream its initial configuration back. Returns 0, or -1 when there is nothing to undo, or (EBADF)
/// when the saved copy has been closed; the stream then stays as it is.
int UndoRedir(int flujo);

/// Prints the state of the streams that take part in redirection.
void ShowRedir();

/// Drops every redirection mark of the open-file table. Redirections in force stay in force.
void ClearRedir();
