#include "shell/shell.h"

jmp_buf EstadoGuardado;
volatile std::sig_atomic_t HaySenales;
int loopHistoric;
char **main3arg;
char ***addrmain3arg;
time_t FechaEjecutable = -1;
