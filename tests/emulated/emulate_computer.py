#!/usr/bin/env python3
"""emulate_computer.py BUILD FOLDER few|all - runs test programs where the processor has AVX-512.

The emulator of single programs, qemu-user, has no AVX-512. Bochs has, but it emulates a whole computer: each starts
from a CD with Debian's kernel, programs of the folder BUILD and their libraries, and is about a hundred times slower
than a real processor. The programs of the entries test VariantAvx512 in few cases; the others select it. `few` are the
programs that run all operations in a short time, and those that run the fuzzers' inputs. FOLDER gets the CDs and all
output.
"""
import glob
import os
import shutil
import subprocess
import sys
import time

ROOT = os.path.abspath(f"{os.path.dirname(__file__)}/../..")

# In Bochs 2.7 the estimate of the reciprocal root is wrong for odd powers of two. The other tests of roots take the
# estimate of the processor that they run on.
WRONG_ROOTS = ["Overlap.Arithmetic32f/*"]

# The files of the source tree that programs read.
FILES = ["docs/variants.md", "tests/entries/results.txt", "tests/package/exported_names.txt",
         *(os.path.relpath(corpus, ROOT) for corpus in glob.glob(f"{ROOT}/tests/fuzz/corpus/*.txt"))]

# Large regions, which run the same instructions as small ones with the low limits, and one that needs more memory than
# the computer has.
LARGE = ["*largeRegions/*", "*/LargeRegions*", "*_belowItsSource/*", "*_bands/*", "*_strips/*", "*/WideRegions/*",
         "*.LimitOfStreaming/*", "*.AroundTheLimits/*", "*.FillsRegionsWithMoreWorkMemoryThanABufferHolds"]

# Bochs reports sizes of registers saved by xsaves and xsavec that are not those which the kernel computes. After a
# failure of the kernel the processor resets, which ends Bochs.
KERNEL_OPTIONS = "console=ttyS0,115200 loglevel=0 mitigations=off nokaslr clearcpuid=xsaves,xsavec,pku panic=1 reboot=t"

BOCHS = """\
display_library: rfb, options="timeout=0"
romimage: file=/usr/share/bochs/BIOS-bochs-latest
vgaromimage: file=/usr/share/vgabios/vgabios.bin
cpu: model=corei7_skylake_x, count=1, ips=100000000, reset_on_triple_fault=0
memory: guest=1024, host=1024
ata0-master: type=cdrom, path={folder}/cd.iso, status=inserted
boot: cdrom
com1: enabled=1, mode=file, dev={folder}/output
log: {folder}/log
panic: action=fatal
error: action=ignore
"""


# Each has a gigabyte of memory.
COMPUTERS = min(os.cpu_count(), 4)


def fetch_kernel(folder):
    """Debian's smallest kernel, which is not installed."""
    kernel = os.path.join(folder, "vmlinuz")
    if not os.path.exists(kernel):
        said = subprocess.run(["apt-cache", "depends", "linux-image-cloud-amd64"], check=True, capture_output=True,
                              text=True).stdout
        package = next((line.split()[-1] for line in said.splitlines() if "Depends: linux-image-" in line), None)
        if not package:
            sys.exit("The lists of packages have no linux-image-cloud-amd64. Get them with: apt-get update")
        subprocess.run(["apt-get", "download", "-q", package], cwd=folder, check=True)
        subprocess.run(["dpkg", "-x", glob.glob(f"{folder}/{package}_*.deb")[0], f"{folder}/package"], check=True)
        shutil.move(glob.glob(f"{folder}/package/boot/vmlinuz-*")[0], kernel)
    return kernel


def arguments(program):
    if "/fuzz/" in program:
        return f"'{ROOT}/tests/fuzz/corpus/{program.partition('/replay_')[2]}.txt'"
    arguments = ["--gtest_brief=1", "--gtest_color=no", "--gtest_filter=-" + ":".join(WRONG_ROOTS + LARGE)]
    if "/entries/" in program and not program.endswith("plan_tests"):
        arguments += ["--level=few", "--variant=VariantAvx512", "--expected-index=5"]
    return " ".join(f"'{argument}'" for argument in arguments)


def make_disk(disk, programs):
    """The files that the computer has, in memory: it runs the programs and stops."""
    for name in ("bin", "dev", "lib64", "proc", "programs", "sys", "tmp"):
        os.makedirs(f"{disk}/{name}")
    shutil.copy("/bin/busybox", f"{disk}/bin")
    libraries = set()
    for line in subprocess.run(["ldd", *programs], check=True, capture_output=True, text=True).stdout.splitlines():
        libraries.update(word for word in line.split() if word.startswith("/") and not word.endswith(":"))
    for library in libraries:
        shutil.copy(library, f"{disk}/lib64/{os.path.basename(library)}")
    for file in FILES:
        os.makedirs(os.path.dirname(f"{disk}{ROOT}/{file}"), exist_ok=True)
        shutil.copy(f"{ROOT}/{file}", f"{disk}{ROOT}/{file}")
    commands = ["#!/bin/busybox sh", "/bin/busybox --install -s /bin",
                "export PATH=/bin LD_LIBRARY_PATH=/lib64",
                # Names that are resolved late need xrstor, which fails in Bochs without xsavec.
                "export LD_BIND_NOW=1",
                "mount -t proc proc /proc; mount -t sysfs sys /sys; mount -t devtmpfs dev /dev"]
    for program in programs:
        name = os.path.basename(program)
        subprocess.run(["strip", "-o", f"{disk}/programs/{name}", program], check=True)
        commands.append(f"echo '== {name}'; /programs/{name} {arguments(program)} 2>&1 && echo '== passed {name}'")
    # The serial line is slow: its last lines need some seconds.
    commands.append("sleep 5; poweroff -f")
    with open(f"{disk}/init", "w", encoding="ascii") as init:
        init.write("\n".join(commands) + "\n")
    os.chmod(f"{disk}/init", 0o755)


def make_cd(folder, kernel, programs):
    disk, cd = f"{folder}/disk", f"{folder}/cd"
    make_disk(disk, programs)
    os.makedirs(f"{cd}/isolinux")
    subprocess.run(f"find . | cpio --quiet -o -H newc >'{cd}/disk'", shell=True, cwd=disk, check=True)
    shutil.copy(kernel, f"{cd}/kernel")
    for file in ("/usr/lib/ISOLINUX/isolinux.bin", "/usr/lib/syslinux/modules/bios/ldlinux.c32"):
        shutil.copy(file, f"{cd}/isolinux")
    with open(f"{cd}/isolinux/isolinux.cfg", "w", encoding="ascii") as config:
        config.write(f"DEFAULT linux\nLABEL linux\nKERNEL /kernel\nINITRD /disk\nAPPEND {KERNEL_OPTIONS}\n")
    subprocess.run(["xorriso", "-as", "mkisofs", "-quiet", "-o", f"{folder}/cd.iso", "-b", "isolinux/isolinux.bin",
                    "-c", "isolinux/boot.cat", "-no-emul-boot", "-boot-load-size", "4", "-boot-info-table", cd],
                   check=True, stderr=subprocess.DEVNULL)


def start(folder):
    """Starts the computer. Debian's Bochs has a debugger, which waits for a command first, and for the end of input."""
    with open(f"{folder}/bochsrc", "w", encoding="ascii") as config:
        config.write(BOCHS.format(folder=folder))
    with open(f"{folder}/debugger", "w", encoding="ascii") as commands:
        commands.write("c\n")
    with open(f"{folder}/messages", "wb") as messages:
        return subprocess.Popen(["bochs", "-q", "-f", f"{folder}/bochsrc", "-rc", f"{folder}/debugger"],
                                stdin=subprocess.PIPE, stdout=messages, stderr=subprocess.STDOUT)


def output(folder):
    path = f"{folder}/output"
    if not os.path.exists(path):
        return ""
    with open(path, encoding="utf-8", errors="replace", newline="") as lines:
        return lines.read().replace("\r", "")


def run(folder, programs, count):
    kernel = fetch_kernel(folder)
    computers = []
    for i in range(count):
        computer = f"{folder}/computer{i}"
        shutil.rmtree(computer, ignore_errors=True)
        os.makedirs(computer)
        make_cd(computer, kernel, programs[i::count])
        computers.append((computer, start(computer)))

    shown = [0] * count
    while True:
        ended = all(process.poll() is not None for _, process in computers)
        for i, (computer, _) in enumerate(computers):
            lines = output(computer).splitlines()[:None if ended else -1]
            for line in lines[shown[i]:]:
                print(line, flush=True)
            shown[i] = max(shown[i], len(lines))
        if ended:
            break
        time.sleep(2)

    said = "".join(output(computer) for computer, _ in computers).splitlines()
    failed = [name for name in map(os.path.basename, programs) if f"== passed {name}" not in said]
    print(f"Left out: {' '.join(WRONG_ROOTS + LARGE)}")
    print(f"{len(programs)} programs on processors with AVX-512; failed: {' '.join(failed) or 'none'}")
    return not failed


def main():
    build, folder = (os.path.abspath(path) for path in sys.argv[1:3])
    tests = f"{build}/tests"
    programs = [f"{tests}/frame/frame_processor_test", *sorted(glob.glob(f"{tests}/fuzz/replay_*"))]
    if sys.argv[3] == "few":
        for name in ("results", "overlap", "variant_differences"):
            programs += [f"{tests}/entries/{name}_tests", f"{tests}/entries/{name}_tests_lowered"]
    else:
        programs += sorted(glob.glob(f"{tests}/entries/*_tests") + glob.glob(f"{tests}/entries/*_tests_lowered")
                           + glob.glob(f"{tests}/facades/*_tests"))
    os.makedirs(folder, exist_ok=True)
    sys.exit(0 if run(folder, programs, COMPUTERS) else 1)


main()
