// SPDX-License-Identifier: MIT

#pragma once

// Command handlers of signals. Each receives the null-terminated words after the command word
// (args[-1] is the command word as typed) and reports everything by printing.

void Cmd_sigdefault(char *args[]);
void Cmd_sigignore(char *args[]);
void Cmd_sigmask(char *args[]);
void Cmd_sigunmask(char *args[]);
void Cmd_sighandler(char *args[]);
void Cmd_sigaction(char *args[]);
void Cmd_sigprocmask(char *args[]);
void Cmd_limitresend(char *args[]);
void Cmd_siginfo(char *args[]);
void Cmd_sigcount(char *args[]);
void Cmd_sigaltstack(char *args[]);
void Cmd_bucle(char *args[]);
void Cmd_segmentation(char *args[]);
void Cmd_fpe(char *args[]);
void Cmd_usesignals(char *args[]);
void Cmd_protectsegv(char *args[]);
void Cmd_protectfpe(char *args[]);
