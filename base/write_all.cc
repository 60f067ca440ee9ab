// SPDX-License-Identifier: MIT

#include "base/write_all.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

ssize_t EscribirAlgo(int df, const void *bytes, size_t n) {
    for (;;) {
        const ssize_t escritos = write(df, bytes, n);
        if (escritos >= 0) return escritos;
        if (errno == EAGAIN) {
            struct pollfd espera = {df, POLLOUT, 0};
            poll(&espera, 1, -1);
        } else if (errno != EINTR) {
            return -1;
        }
    }
}

int EscribirTodo(int df, const void *bytes, size_t n) {
    const char *p = static_cast<const char *>(bytes);
    while (n > 0) {
        const ssize_t escritos = EscribirAlgo(df, p, n);
        if (escritos == -1) return -1;
        p += escritos;
        n -= static_cast<size_t>(escritos);
    }
    return 0;
}
