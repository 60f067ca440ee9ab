# SPDX-License-Identifier: MIT
"""The rows of the table: what is compared with what. Each function checks what its contenders print or leave
behind before it times them, and returns its rows."""

import hashlib
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from sessions import Dash, Desnudo, Programa, Shell
from timing import Fila, alternar, cronometrar, faltas, hyperfine, procesador
from trees import arbol_ancho, arbol_hondo

MIB = 1 << 20
EN_MEMORIA = "/dev/shm" if os.path.isdir("/dev/shm") else None


class Banco:
    """Where things are: the programs built for the comparison and a directory for files."""

    def __init__(self, construido, dir_trabajo):
        self.bin = f"{construido}/bin"
        self.shell = [f"{self.bin}/shell"]
        self.dash, self.bash = ["/usr/bin/dash"], ["/usr/bin/bash"]
        self.dir = dir_trabajo
        if os.path.lexists("/run/systemd/system"):
            # The warning about systemd pauses for seconds. The peers carry the same weight.
            sin_systemd = ["/usr/bin/env", f"LD_PRELOAD={construido}/bench/libno_systemd.so"]
            self.shell, self.dash, self.bash = (sin_systemd + p for p in (self.shell, self.dash, self.bash))

    def fichero(self, nombre, contenido=None):
        """A path in the working directory; written when there is a content."""
        ruta = f"{self.dir}/{nombre}"
        if contenido is not None:
            with open(ruta, "w" if isinstance(contenido, str) else "wb") as fichero:
                fichero.write(contenido)
        return ruta


def comprobar(cierto, que):
    if not cierto:
        raise AssertionError(f"the outputs differ or are wrong: {que}")


def salida_de(argumentos, entrada):
    """What a program prints, its input being a file."""
    with open(entrada, "rb") as fichero:
        return subprocess.run(argumentos, stdin=fichero, check=True, capture_output=True, text=True).stdout


def arranque(b):
    comprobar(salida_de(b.shell, os.devnull).startswith("Iniciando shell..\n"), "start")
    nuestras, rivales = alternar(20, hyperfine(" ".join(b.shell), 20), hyperfine(" ".join(b.dash), 20))
    return [Fila("arranque hasta el fin de la entrada", "dash", 1.05, nuestras, rivales)]


def pss_kib(argumentos, cuantos):
    """The mean PSS of `cuantos` copies of a program at once, each waiting for its first line."""
    procesos = []
    try:
        for _ in range(cuantos):
            procesos.append(subprocess.Popen(argumentos, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL))
        for proceso in procesos:
            esperar_lectura(proceso.pid)
        return sum(campo_de_smaps(proceso.pid, "Pss") for proceso in procesos) / cuantos
    finally:
        for proceso in procesos:
            proceso.stdin.close()
            proceso.wait()


def esperar_lectura(pid, plazo=10):
    """Until the process sleeps in a read of a pipe (asked of the system: dash prints no prompt)."""
    fin = time.monotonic() + plazo
    while time.monotonic() < fin:
        with open(f"/proc/{pid}/wchan", encoding="ascii") as fichero:
            if "pipe" in fichero.read():
                return
        time.sleep(0.002)
    raise RuntimeError(f"process {pid} does not come to wait for input")


def campo_de_smaps(pid, campo):
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as fichero:
        return int(re.search(rf"^{campo}: +(\d+) kB", fichero.read(), re.MULTILINE).group(1))


def memoria(b):
    # Copies of their own: other processes of the machine that run dash would share its pages with this one.
    # The names are equally long: the loader keeps them in memory.
    shell = b.shell[:-1] + [shutil.copy(b.shell[-1], b.fichero("sh_a"))]
    dash = b.dash[:-1] + [shutil.copy("/usr/bin/dash", b.fichero("sh_b"))]
    filas = []
    for cuantos, meta, rondas in ((1, 1.05, 15), (50, 1.2, 3)):
        nuestras, rivales = alternar(rondas, lambda n=cuantos: pss_kib(shell, n),
                                     lambda n=cuantos: pss_kib(dash, n))
        titulo = "memoria (PSS) de un shell inactivo" if cuantos == 1 else "memoria (PSS) de cada uno de 50 a la vez"
        filas.append(Fila(titulo, "dash", meta, nuestras, rivales, "KiB"))
    # What nobody shares with it; the pages of a file that has just been built count as clean once it is on the disk.
    os.sync()
    nuestras, rivales = alternar(5, lambda: sucia_kib(b.shell), lambda: sucia_kib(b.dash))
    filas.append(Fila("memoria propia y escrita de un shell inactivo", "dash", 1.2, nuestras, rivales, "KiB"))
    return filas


def sucia_kib(argumentos):
    """The private dirty memory of a program that waits for its first line."""
    proceso = subprocess.Popen(argumentos, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
    try:
        esperar_lectura(proceso.pid)
        return campo_de_smaps(proceso.pid, "Private_Dirty")
    finally:
        proceso.stdin.close()
        proceso.wait()


def lineas(b):
    n = 4000
    nuestro = b.fichero("pid.txt", "pid\n" * n)
    corto = b.fichero("pid_corto.txt", "prompt >\n" + "pid\n" * n)
    suyo = b.fichero("pid.sh", "echo $$\n" * n)
    for entrada in (nuestro, corto):
        comprobar(salida_de(b.shell, entrada).count("Pid de shell: ") == n, "pid")
    for rival in (b.dash, b.bash):
        comprobar(len(re.findall(r"^\d+$", salida_de(rival, suyo), re.MULTILINE)) == n, "echo $$")
    fichero, prompt_corto, dash = alternar(
        31, cronometrar(b.shell, nuestro), cronometrar(b.shell, corto), cronometrar(b.dash, suyo))
    tuberia, bash = alternar(
        15, cronometrar(b.shell, b"pid\n" * n), cronometrar(b.bash, b"echo $$\n" * n))
    return [
        Fila("4.000 `pid` de un fichero, prompt por defecto", "dash, `echo $$`", 1.0, fichero, dash),
        Fila("4.000 `pid` de un fichero, prompt de un carácter", "dash, `echo $$`", 0.6, prompt_corto, dash),
        Fila("4.000 `pid` de una tubería, prompt por defecto", "bash, `echo $$`", 0.7, tuberia, bash),
    ]


def programas(b):
    filas = []
    for titulo, n, nuestra, suya, meta in (
            ("500 programas en primer plano", 500, "/bin/true", "/bin/true", 1.1),
            ("200 tuberías de dos programas", 200, "pipe /bin/echo hola % /bin/cat", "/bin/echo hola | /bin/cat",
             1.0)):
        nuestro = b.fichero("programas.txt", f"{nuestra}\n" * n)
        suyo = b.fichero("programas.sh", f"{suya}\n" * n)
        prueba = nuestra.replace("true", "echo hola"), suya.replace("true", "echo hola")
        comprobar(salida_de(b.shell, b.fichero("prueba.txt", f"{prueba[0]}\n" * 9)).count("hola\n") == 9, titulo)
        comprobar(salida_de(b.dash, b.fichero("prueba.sh", f"{prueba[1]}\n" * 9)) == "hola\n" * 9, titulo)
        rivales = {"dash": f"{' '.join(b.dash)} < {suyo}"}
        if nuestra == suya:  # dash uses vfork: the limit of whoever uses fork is what fork itself costs
            rivales["fork, execv y waitpid en C"] = f"{b.bin}/bare_fork {n} {nuestra}"
        muestras = alternar(10, hyperfine(f"{' '.join(b.shell)} < {nuestro}", 1),
                            *(hyperfine(orden, 1) for orden in rivales.values()))
        filas += [Fila(titulo, rival, meta, muestras[0], suyas) for rival, suyas in zip(rivales, muestras[1:])]
    return filas


def por_programa(b):
    """What a line that starts a program costs beside time: page faults (of the shell and of the program's process), and
    the processor of the shell alone."""
    n = 500
    vacio = b.fichero("vacio.txt", "")
    nuestro = b.fichero("faltas.txt", "/bin/true\n" * n)
    un_programa = [f"{b.bin}/bare_fork", "0", "/bin/true"]
    mil = [f"{b.bin}/bare_fork", str(n), "/bin/true"]
    base_nuestra, nuestras, base_suya, suyas = alternar(
        5, cronometrar(b.shell, vacio, medida=faltas), cronometrar(b.shell, nuestro, medida=faltas),
        cronometrar(un_programa, medida=faltas), cronometrar(mil, medida=faltas))
    por_linea = [(m - min(base_nuestra)) / n for m in nuestras]
    por_llamada = [(m - min(base_suya)) / n for m in suyas]
    filas = [Fila("faltas de página por programa en primer plano", "fork, execv y waitpid en C", 1.1, por_linea,
                  por_llamada, "")]
    nuestro = b.fichero("back.txt", "back /bin/true\n" * n)
    suyo = b.fichero("back.sh", "/bin/true &\n" * n)
    comprobar(salida_de(b.shell, b.fichero("back_prueba.txt", "back /bin/echo hola\n" * 9)).count("hola") <= 9, "back")
    nuestras, suyas = alternar(9, cronometrar(b.shell, nuestro, medida=procesador),
                               cronometrar(b.dash, suyo, medida=procesador))
    filas.append(Fila("500 `back`, procesador propio", "dash, `&`", 1.2, nuestras, suyas))
    return filas


def volcado(b):
    tam = 16 * MIB
    contenido = os.urandom(tam)
    origen = b.fichero("volcado.bin", contenido)
    nuestro, suyo = b.fichero("volcado.txt"), b.fichero("volcado.xxd")

    def volcar():
        """From the start of the shell to its end; the time in which the bench reads the address is not in it."""
        with Shell(b.shell, nuestro) as shell:
            shell.lineas(f"memmalloc {tam}")
            ms = shell.transcurrido()
            direccion = re.search(r"en (0x[0-9a-f]+)", shell.salida()).group(1)
            inicio = time.perf_counter_ns()
            shell.lineas("prompt >", f"readfile {origen} {direccion}", f"memdump {direccion} {tam}")
        return ms + (time.perf_counter_ns() - inicio) / 1e6

    volcar()
    comprobar(bytes_del_volcado(nuestro) == contenido, "memdump")
    xxd = ["/usr/bin/xxd", origen]
    cronometrar(xxd, salida=suyo)()
    vuelta = subprocess.run(["/usr/bin/xxd", "-r", suyo], check=True, capture_output=True).stdout
    comprobar(vuelta == contenido, "xxd")
    otros = {"hexdump -C": ["/usr/bin/hexdump", "-C", origen], "od -A x -t x1z": ["/usr/bin/od", "-Ax", "-tx1z", origen]}
    muestras = alternar(5, volcar, cronometrar(xxd, salida=suyo),
                        *(cronometrar(orden, salida=suyo) for orden in otros.values()))
    filas = [Fila("`memdump` de 16 MiB a un fichero", "xxd", 0.3, muestras[0], muestras[1], disco=True)]
    for nombre, suyas in zip(otros, muestras[2:]):
        filas.append(Fila("`memdump` de 16 MiB a un fichero", nombre, 0.3, muestras[0], suyas, disco=True))
    return filas


def bytes_del_volcado(ruta):
    """The bytes that the lines of values of a memdump show."""
    with open(ruta, encoding="latin-1", newline="\n") as fichero:
        cuerpo = fichero.read().split("direccion 0x", 1)[1].split("\n", 1)[1]
    filas = cuerpo.split("\n")
    return bytes.fromhex("".join(filas[1::2]).split(">")[0])


def bloques(b):
    tam = 512 * MIB
    filas = []
    salida = b.fichero("bloques.txt")
    with Shell(b.shell, salida) as shell:
        origen, destino = shell.asignar(tam), shell.asignar(tam)
        comprobar_bloques(b, shell, origen, destino)
        with Desnudo([f"{b.bin}/bare_memset", str(tam)], os.devnull) as memset:
            muestras = alternar(7, lambda: shell.lineas(f"memfill {origen} {tam} 0x42"), memset.una_vez)
            filas.append(Fila("`memfill` de 512 MiB, paso 1", "memset en C", 1.1, *muestras))
        with Desnudo([f"{b.bin}/bare_memcpy", str(tam)], os.devnull) as memcpy:
            muestras = alternar(7, lambda: shell.lineas(f"memcopy {origen} {destino} {tam}"), memcpy.una_vez)
            filas.append(Fila("`memcopy` de 512 MiB", "memcpy en C", 1.1, *muestras))
    return filas


def comprobar_bloques(b, shell, origen, destino):
    copia = b.fichero("bloque.bin")
    shell.lineas(f"memfill {destino} 100000 0x43", f"memfill {origen} 70000 0x42", f"memcopy {origen} {destino} 80000",
                 f"writefile -o {copia} {destino} 100000")
    with open(copia, "rb") as fichero:
        comprobar(fichero.read() == b"B" * 70000 + b"A" * 10000 + b"C" * 20000, "memfill, memcopy")


def transferencias(b):
    tam = 256 * MIB
    contenido = os.urandom(MIB) * (tam // MIB)
    fichero, nuestro, suyo = b.fichero("origen.bin", contenido), b.fichero("nuestro.bin"), b.fichero("suyo.bin")
    del contenido
    filas = []
    with Shell(b.shell, b.fichero("transferencias.txt")) as shell:
        dir_lectura = shell.asignar(tam)
        shell.lineas(f"readfile {fichero} {dir_lectura}", f"writefile -o {nuestro} {dir_lectura} {tam}")
        comprobar(huella(nuestro) == huella(fichero), "readfile, writefile")
        with Desnudo([f"{b.bin}/bare_read", fichero, str(tam)], os.devnull) as lectura:
            muestras = alternar(7, lambda: shell.lineas(f"readfile {fichero} {dir_lectura}"), lectura.una_vez)
            filas.append(Fila("`readfile` de 256 MiB", "un read en C", 1.05, *muestras, disco=True))
        with Desnudo([f"{b.bin}/bare_write", suyo, str(tam)], os.devnull) as escritura:
            muestras = alternar(7, lambda: shell.lineas(f"writefile -o {nuestro} {dir_lectura} {tam}"),
                                escritura.una_vez)
            filas.append(Fila("`writefile` de 256 MiB", "un write en C", 1.05, *muestras, disco=True))
    for ruta in (fichero, nuestro, suyo):
        os.unlink(ruta)
    return filas


def huella(ruta):
    with open(ruta, "rb") as fichero:
        return hashlib.file_digest(fichero, "sha256").digest()


def listados(b):
    ancho, hondo = b.fichero("ancho"), b.fichero("hondo")
    arbol_ancho(ancho)
    arbol_hondo(hondo)
    filas = []
    for titulo, arbol, nuestra, rival, suya, meta in (
            ("`listrec -long`, 20.000 ficheros en 400 directorios", ancho, "listrec -long", "ls -lRU", "ls -lRU", 0.6),
            ("`listrec`, el mismo árbol", ancho, "listrec", "find -printf", r"find {} -printf ' %7s  %f\n'", 1.05),
            ("`list -recb`, el mismo árbol", ancho, "list -recb", "find -depth -printf",
             r"find {} -depth -printf ' %7s  %f\n'", 1.05),
            ("`listrec -long`, 200 directorios de hondo", hondo, "listrec -long", "ls -lRU", "ls -lRU", 0.5)):
        entrada = b.fichero("listado.txt", f"{nuestra} {arbol}\n")
        suya = suya.format(arbol) if "{}" in suya else f"{suya} {arbol}"
        comprobar_listado(titulo, salida_de(b.shell, entrada), suya)
        veces = 3 if arbol is ancho else 10
        nuestras, rivales = alternar(7, hyperfine(f"{' '.join(b.shell)} < {entrada}", veces),
                                     hyperfine(f"{suya} </dev/null", veces))
        filas.append(Fila(titulo, rival, meta, nuestras, rivales, disco=True))
    return filas


def fechas_distintas(b):
    """A listing in which no date is that of the line before, against the bare work: own processor time."""
    arbol = b.fichero("fechas")
    arbol_ancho(arbol)
    fecha = 1_000_000_000
    for carpeta, _, nombres in os.walk(arbol):
        for nombre in nombres:
            os.utime(f"{carpeta}/{nombre}", (fecha, fecha))
            fecha += 24_611
    entrada = b.fichero("fechas.txt", f"listrec -long {arbol}\n")
    suya = [f"{b.bin}/bare_list", arbol]
    comprobar(salida_de(b.shell, entrada).count(".txt\n") == salida_de(suya, os.devnull).count(".txt\n") == 20000, "dates")
    nuestras, rivales = alternar(7, cronometrar(b.shell, entrada, medida=procesador),
                                 cronometrar(suya, medida=procesador))
    return [Fila("`listrec -long`, 20.000 fechas distintas, procesador propio", "lo mismo en C", 1.2, nuestras, rivales,
                 disco=True)]


def comprobar_listado(titulo, nuestro, orden):
    """Both list the same entries, with the same sizes."""
    suyo = subprocess.run(orden, shell=True, check=True, capture_output=True, text=True).stdout
    nuestras = [linea.split() for linea in nuestro.splitlines() if re.match(r" +\d+  |\d{4}/", linea)]
    if orden.startswith("ls"):
        suyas = [linea.split() for linea in suyo.splitlines() if re.match(r"[-d][-rwx]{9}", linea)]
        mias, otras = ([(l[-1], l[i]) for l in ls] for ls, i in ((nuestras, -2), (suyas, 4)))
    else:
        raiz = orden.split()[1].rsplit("/", 1)[1]
        mias = [(l[1], l[0]) for l in nuestras]
        otras = [(l[1], l[0]) for l in map(str.split, suyo.splitlines()) if l[1] != raiz]
    comprobar(len(mias) > 900 and sorted(mias) == sorted(otras), titulo)


def borrado(b):
    # In memory where there is such a place, so that the moods of a disk do not hide what the programs do.
    with tempfile.TemporaryDirectory(prefix="shell_bench_", dir=EN_MEMORIA) as base:
        return borrado_en(b, f"{base}/arbol")


def borrado_en(b, arbol):
    entrada = b.fichero("deltree.txt", f"deltree {arbol}\n")

    def con_arbol(argumentos, entrada=os.devnull):
        medir = cronometrar(argumentos, entrada, preparar=lambda: arbol_ancho(arbol))

        def medir_y_comprobar():
            ms = medir()
            comprobar(not os.path.exists(arbol), "deletion")
            return ms

        return medir_y_comprobar

    nuestras, rm, find = alternar(7, con_arbol(b.shell, entrada), con_arbol(["/usr/bin/rm", "-rf", arbol]),
                                  con_arbol(["/usr/bin/find", arbol, "-delete"]))
    rival, suyas = min(("rm -rf", rm), ("find -delete", find), key=lambda par: min(par[1]))
    return [Fila("`deltree`, 20.000 ficheros", f"el mejor: {rival}", 1.0, nuestras, suyas, disco=True)]


def sistema_en_memoria(b):
    num, tam = 2000, 4096
    origen = b.fichero("pequenos")
    os.mkdir(origen)
    for i in range(num):
        with open(f"{origen}/f{i:04}", "wb") as fichero:
            fichero.write(bytes([i % 251]) * tam)
    salida, guion = b.fichero("memfs.txt"), b.fichero("memfs_guion.txt")
    bloque = 16 * MIB

    def guardar(despues=None):
        """From the start of the shell to its end; the time in which the bench writes the script is not in it.
        `despues` gets the shell while the files are there."""
        with Shell(b.shell, salida) as shell:
            shell.lineas(f"memmalloc {bloque}")
            ms = shell.transcurrido()
            direccion = re.search(r"en (0x[0-9a-f]+)", shell.salida()).group(1)
            copias = "".join(f"memfs-cp {origen}/f{i:04} a:f{i:04}\n" for i in range(num))
            with open(guion, "w", encoding="ascii") as fichero:
                fichero.write(copias + "writestr 2 #\nredin -reset\n")
            inicio = time.perf_counter_ns()
            shell.enviar(f"assign a {direccion}\nmemfs-format {direccion}\nprompt >\ninitredir\nredin {guion}\n")
            if despues:
                despues(shell)
                return None
        return ms + (time.perf_counter_ns() - inicio) / 1e6

    def comprobar_copias(shell):
        ultimo = b.fichero("ultimo.bin")
        shell.lineas(f"memfs-cp a:f{num - 1} {ultimo}", "memfs-list a")
        with open(ultimo, "rb") as fichero:
            comprobar(fichero.read() == bytes([(num - 1) % 251]) * tam, "memfs-cp")
        comprobar(f"Total {num} fichero(s)" in shell.salida(), "memfs-list")

    guardar(comprobar_copias)
    destino = f"/dev/shm/{os.path.basename(b.dir)}"
    copia = ("import os, shutil, sys\n"
             "for nombre in os.listdir(sys.argv[1]): shutil.copyfile(f'{sys.argv[1]}/{nombre}', f'{sys.argv[2]}/{nombre}')\n")
    rival = cronometrar([sys.executable, "-c", copia, origen, destino],
                        preparar=lambda: (shutil.rmtree(destino, ignore_errors=True), os.mkdir(destino)))
    try:
        nuestras, rivales = alternar(7, guardar, rival)
        comprobar(len(os.listdir(destino)) == num, "copy into tmpfs")
    finally:
        shutil.rmtree(destino, ignore_errors=True)
    filas = [Fila("2.000 ficheros de 4 KiB a un sistema de ficheros en memoria", "un Python que copia a tmpfs", 0.4,
                  nuestras, rivales, disco=True)]

    def borrar():
        ms = []

        def borrar_todos(shell):
            shell.lineas("historic -c")
            ms.append(shell.enviar("".join(f"memfs-del a:f{i:04}\n" for i in range(num)) + "writestr 2 #\n"))
            shell.lineas("memfs-list a")
            comprobar("Total 0 fichero(s)" in shell.salida(), "memfs-del")

        guardar(borrar_todos)
        return ms

    def mover():
        with Desnudo([f"{b.bin}/bare_memmove", str(num + 1), str(tam), "272"], os.devnull) as memmove:
            return memmove.enviar("\n" * num, num)

    nuestras, rivales = alternar(5, borrar, mover)
    filas.append(Fila("borrarlos, del primero al último", "memmove de los mismos bytes en C", 1.1, nuestras, rivales))
    return filas


def guardar_en_memoria(b):
    """memfs-cp against what a Python process and a C program need to keep the same files."""
    num, tam, previos = 2000, 4096, 10000
    origen = b.fichero("a_guardar")
    os.mkdir(origen)
    for i in range(num):
        with open(f"{origen}/f{i:04}", "wb") as fichero:
            fichero.write(bytes([i % 251]) * tam)
    diccionario = ("import os, sys\n"
                   "ficheros = {}\n"
                   "for nombre in os.listdir(sys.argv[1]):\n"
                   "    with open(f'{sys.argv[1]}/{nombre}', 'rb') as f: ficheros[nombre] = f.read()\n")
    copias = "".join(f"memfs-cp {origen}/f{i:04} a:f{i:04}\n" for i in range(num))
    guion, salida = b.fichero("guardar.txt", copias + "writestr 2 #\nredin -reset\n"), b.fichero("guardar_salida.txt")
    uno = b.fichero("uno", "x")
    previas = b.fichero("previas.txt", "".join(f"memfs-cp {uno} a:g{i:05}\n" for i in range(previos)) +
                        "writestr 2 #\nredin -reset\n")

    def guardar(llenar):
        """Milliseconds: from the start of the shell, or only those of the copies into an SF that has files."""
        with Shell(b.shell, salida) as shell:
            shell.lineas(f"memmalloc {(64 if llenar else 16) * MIB}")
            ms = 0 if llenar else shell.transcurrido()
            direccion = re.search(r"en (0x[0-9a-f]+)", shell.salida()).group(1)
            shell.lineas("prompt >", "initredir")
            inicio = time.perf_counter_ns()
            shell.lineas(f"assign a {direccion}", f"memfs-format {direccion}")
            if llenar:
                shell.enviar(f"redin {previas}\n")
                inicio = time.perf_counter_ns()
            shell.enviar(f"redin {guion}\n")
            ms += (time.perf_counter_ns() - inicio) / 1e6
            if not os.path.exists(b.fichero("comprobado")):
                shell.lineas("memfs-list a")
                comprobar(f"Total {num + (previos if llenar else 0)} fichero(s)" in shell.salida(), "memfs-cp")
            return ms

    guardar(False)
    guardar(True)
    b.fichero("comprobado", "")
    nuestras, rivales = alternar(9, lambda: guardar(False), cronometrar(["/usr/bin/python3", "-c", diccionario, origen]))
    filas = [Fila("`memfs-cp` de 2.000 ficheros de 4 KiB", "un Python que los guarda en un diccionario", 0.6, nuestras,
                  rivales)]
    nombres = "".join(f"f{i:04}\n" for i in range(num))

    def en_c():
        with Programa([f"{b.bin}/bare_store", str(previos), str(tam), origen], os.devnull) as programa:
            inicio = time.perf_counter_ns()
            programa.proceso.stdin.write(nombres.encode())
            programa.proceso.stdin.close()
            programa.esperar_marca()
            return (time.perf_counter_ns() - inicio) / 1e6

    nuestras, rivales = alternar(5, lambda: guardar(True), en_c)
    filas.append(Fila("`memfs-cp` de 2.000 ficheros a un SF con 10.000", "lo mismo en C, con su búsqueda", 1.5, nuestras,
                      rivales))
    return filas


def bloques_a_miles(b):
    """4,000 blocks: how often the listing asks the system for the status of the time zone's file, and what memfs-find
    costs against 400."""
    asignar = "malloc 32\n"
    con_lista = b.fichero("bloques_con.txt", asignar * 4000 + "mem -blocks\n")
    sin_lista = b.fichero("bloques_sin.txt", asignar * 4000)
    llamadas = [llamadas_a_stat(b, con_lista) - llamadas_a_stat(b, sin_lista)]
    filas = [Fila("`mem -blocks` de 4.000 bloques, llamadas a `stat`", "una", 1.0, llamadas, [1], "")]
    muestras = {}
    for cuantos in (4000, 400):
        shell = Shell(b.shell, b.fichero(f"buscar{cuantos}.txt"))
        muestras[cuantos] = shell
        shell.lineas("prompt >", *["malloc 32"] * cuantos)
    with muestras[4000] as muchos, muestras[400] as pocos:
        nuestras, rivales = alternar(31, lambda: muchos.lineas("memfs-find"), lambda: pocos.lineas("memfs-find"))
    filas.append(Fila("`memfs-find` con 4.000 bloques, frente a 400", "el mismo shell", 12, nuestras, rivales))
    return filas


def llamadas_a_stat(b, entrada):
    with tempfile.NamedTemporaryFile(mode="r", encoding="utf-8") as cuenta, open(entrada, "rb") as lineas_:
        subprocess.run(["strace", "-f", "-o", cuenta.name, "-e", "trace=stat,lstat,newfstatat,statx", *b.shell],
                       stdin=lineas_, stdout=subprocess.DEVNULL, check=True)
        return sum("localtime" in linea for linea in cuenta)


def historico(b):
    with Shell(b.shell, b.fichero("historico.txt")) as shell:
        tanda = 80

        def con(previas):
            def medir():
                shell.lineas("historic -c")
                shell.lineas(*["pid"] * (previas - 2))  # with the two lines that carry the mark
                return shell.lineas(*["pid"] * tanda) / tanda
            return medir

        con(500)()
        shell.lineas("historic")
        comprobar(f"\n{500 + tanda - 1}->pid\n" in shell.salida(), "historic")
        con(4000)()
        comprobar("no almacenado" not in shell.salida(), "historic")
        llenas, cortas = alternar(31, con(4000), con(500))
    return [Fila("una línea con 4.000 en el histórico, frente a 500", "el mismo shell", 1.05, llenas, cortas)]


def trabajos(b):
    num = 200
    pids = []
    try:
        with Shell(b.shell, b.fichero("jobs.txt")) as shell, Dash(b.dash, b.fichero("jobs_dash.txt")) as dash:
            shell.lineas(*["back /bin/sleep 300"] * num)
            dash.lineas(*["/bin/sleep 300 & echo $!"] * num)
            shell.lineas("listjobs")
            dash.lineas("jobs -l")
            pids += re.findall(r" (\d+) +\S+ p=.*ACTIVO \(000\) /bin/sleep 300$", shell.salida(), re.MULTILINE)
            suyos = re.findall(r"^\[\d+\] [-+ ] (\d+) Running", dash.salida(), re.MULTILINE)
            pids += re.findall(r"^(\d+)$", dash.salida(), re.MULTILINE)
            comprobar(len(set(pids)) == 2 * num and len(suyos) == num, "jobs")
            nuestras, rivales = alternar(31, lambda: shell.lineas("listjobs"), lambda: dash.lineas("jobs -l"))
    finally:
        for pid in pids:
            os.kill(int(pid), signal.SIGTERM)
    return [Fila("`listjobs` con 200 procesos", "dash, `jobs -l`", 2.5, nuestras, rivales)]


TODAS = (arranque, memoria, lineas, programas, por_programa, volcado, bloques, transferencias, listados, fechas_distintas,
         borrado, sistema_en_memoria, guardar_en_memoria, bloques_a_miles, historico, trabajos)
