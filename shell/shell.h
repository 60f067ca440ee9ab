#pragma once

#include <csetjmp>
#include <csignal>
#include <ctime>

// What the command loop shares with the subsystems.

extern jmp_buf EstadoGuardado;                ///< restart point, saved by main before the loop
extern volatile std::sig_atomic_t HaySenales; ///< when not 0, a failed read does not end the shell
extern int loopHistoric;                      ///< nesting of historic repetition; 0 before every prompt
extern char **main3arg;                       ///< main's third argument: the environment array
extern char ***addrmain3arg;                  ///< where main holds it
extern time_t FechaEjecutable; ///< modification time of the shell's executable, -1 when unknown

/// Runs one split line: help asked for, a built-in command by any of its names, or a program in the
/// foreground.
void ProcesarEntrada(char *palabras[]);
