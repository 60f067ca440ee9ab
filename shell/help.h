// SPDX-License-Identifier: MIT

#pragma once

/// The bit of the topic with this name, English or Spanish; 0 when there is none.
int GetTopic(const char *nombre);

/// Prints the names of all topics in one line: Spanish when `espanol` is not 0, else English.
void ListTopics(int espanol);

/// The width in columns of the terminal on descriptor 1, or -1 when it is not one.
int NumberOfColumns();

/// Prints the commands of the topics in `mascara`, each followed by its aliases, in lines as wide as the
/// terminal.
void ListCommands(int mascara);

/// Prints the commands that belong to no topic.
void ListDebugCommands();

/// When the second word of a line is "-help" or "-?": shows the help of the first and returns 1. Else 0.
int PideAyuda(char *palabras[]);
