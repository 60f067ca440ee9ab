// SPDX-License-Identifier: MIT

#pragma once

// Command handlers of the memory file system. Each receives the null-terminated words after the command word
// (args[-1] is the command word as typed) and reports everything by printing.

void Cmd_assign(char *args[]);
void Cmd_memfs(char *args[]);
void MemFSListar(char *args[]);
void MemFSFormat(char *args[]);
void MemFSCopiar(char *args[]);
void MemFSMover(char *args[]);
void MemFSBorrar(char *args[]);
void MemFSBuscar(char *args[]);
void Cmd_printAssign(char *args[]);
