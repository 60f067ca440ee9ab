// SPDX-License-Identifier: MIT

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

// bare_fork TIMES PROGRAM: runs a program again and again.
int main(int argc, char *argv[]) {
    if (argc < 3) return 2;
    for (int veces = atoi(argv[1]); veces > 0; veces--) {
        const pid_t pid = fork();
        if (pid == 0) {
            execv(argv[2], argv + 2);
            _exit(255);
        }
        if (pid == -1 || waitpid(pid, nullptr, 0) != pid) return 1;
    }
}
