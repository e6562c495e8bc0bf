#!/usr/bin/env python3
"""Plants a violation of each check into a small source; the check has to report it."""

import os
import subprocess
import tempfile
import unittest

import binaries
import checks
import includes
import paths
import streaming

CXX = os.environ.get("CXX", "c++")

NAMESPACE = """
namespace Zorvan::Primitives {
struct VariantSse2 {};
struct VariantAvx2 {};
template <class V> struct Routines { static int entry(int); };
"""
OWN_NAMES = NAMESPACE + """
namespace { template <class V> [[gnu::noinline]] int helper(int i) { return i * 3; } }
template <class V> int Routines<V>::entry(int i) { return helper<V>(i); }
template struct Routines<VariantSse2>;
}
"""


class Planted(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def compiled(self, source, *options, name="planted.o"):
        path = os.path.join(self.folder.name, name)
        subprocess.run([CXX, "-std=c++20", "-O0", "-fPIC", "-fvisibility=hidden", *options, "-x", "c++", "-", "-o", path],
                       input=source, text=True, check=True)
        return path

    def object(self, source, *options):
        return self.compiled(source, "-c", *options)

    def assembled(self, text):
        """None where the assembler does not know the instruction."""
        path = os.path.join(self.folder.name, "planted.o")
        done = subprocess.run([CXX, "-c", "-x", "assembler", "-", "-o", path], input=f"f: {text}\n",
                              text=True, capture_output=True)
        return path if done.returncode == 0 else None

    def assertReports(self, complaints, *words):
        for word in words:
            self.assertTrue(any(word in complaint for complaint in complaints), f"{word} in {complaints}")


class Symbols(Planted):
    def test_own_names_pass(self):
        self.assertEqual(checks.symbols("VariantSse2", self.object(OWN_NAMES)), [])

    def test_another_variants_names(self):
        self.assertReports(checks.symbols("VariantAvx2", self.object(OWN_NAMES)), "entry(int)")

    def test_a_name_with_two_tags(self):
        source = OWN_NAMES.replace("class V> struct Routines", "class V, class W> struct Routines") \
            .replace("class V> int Routines<V>", "class V, class W> int Routines<V, W>") \
            .replace("Routines<VariantSse2>", "Routines<VariantSse2, VariantAvx2>")
        self.assertReports(checks.symbols("VariantSse2", self.object(source)), "entry(int)")

    def test_a_global_function(self):
        self.assertReports(checks.symbols("VariantSse2", self.object(OWN_NAMES + "int open() { return 1; }")), "open()")

    def test_an_inline_function_of_the_standard_library(self):
        source = "#include <algorithm>\n" + OWN_NAMES + "static int f(int a) { return std::max(a, 1); } int (*use)(int) = f;"
        self.assertReports(checks.symbols("VariantSse2", self.object(source)), "std::max<int>", "use")

    def test_a_merged_variable(self):
        source = OWN_NAMES + "inline int& once() { static int value = 1; return value; } static int f() { return once(); } " \
            "[[gnu::used]] static int (*volatile use)() = f;"
        self.assertReports(checks.symbols("VariantSse2", self.object(source)), "once()::value")

    def test_the_unwinder(self):
        source = OWN_NAMES + "struct S { ~S(); }; void g(); static void f() { S s; g(); } " \
            "[[gnu::used]] static void (*volatile use)() = f;"
        self.assertReports(checks.symbols("VariantSse2", self.object(source)), "DW.ref.__gxx_personality_v0")

    def test_a_use_of_another_variants_routine(self):
        source = OWN_NAMES.replace("template struct Routines<VariantSse2>;",
                                   "template struct Routines<VariantSse2>; extern template struct Routines<VariantAvx2>;") + \
            "static int f() { return Zorvan::Primitives::Routines<Zorvan::Primitives::VariantAvx2>::entry(1); } " \
            "[[gnu::used]] static int (*volatile use)() = f;"
        self.assertReports(checks.symbols("VariantSse2", self.object(source)),
                           "uses Zorvan::Primitives::Routines<Zorvan::Primitives::VariantAvx2>::entry(int)")


# For each instruction: types of objects that have to refuse it and types that may use it.
INSTRUCTIONS = [
    ("bsf %eax, %ecx", "", "frame general base VariantSse2 VariantAvx512"),
    ("cpuid", "base VariantSse2 VariantAvx512", "frame"),
    ("xgetbv", "base VariantSse2", "frame"),
    ("movd %xmm0, %eax", "frame", "base VariantSse2"),
    ("emms", "frame", ""),
    ("movq %mm0, %mm1", "frame base VariantSse2 VariantAvx512", ""),
    ("fldz", "frame base VariantSse2 VariantAvx512", ""),
    ("movntdq %xmm0, (%rdi)", "frame", "base VariantSse2 VariantAvx512"),
    ("lddqu (%rdi), %xmm0", "base VariantSse2", "VariantSsse3 VariantAvx"),
    ("pshufb %xmm1, %xmm0", "base VariantSse2", "VariantSsse3 VariantSse42"),
    ("palignr $3, %xmm1, %xmm0", "VariantSse2", "VariantSsse3"),
    ("pblendvb %xmm0, %xmm1, %xmm2", "VariantSse2 VariantSsse3", "VariantSse42 VariantAvx"),
    ("pmovzxbw %xmm1, %xmm0", "VariantSsse3", "VariantSse42"),
    ("pcmpgtq %xmm1, %xmm0", "VariantSsse3", "VariantSse42"),
    ("pextrw $1, %xmm0, %eax", "frame", "base VariantSse2 VariantSsse3 VariantSse42"),
    ("pextrw $1, %xmm0, (%rdi)", "frame base VariantSse2 VariantSsse3", "VariantSse42 VariantAvx"),
    ("pextrw $1, %xmm0, %fs:8(%rdi,%rcx,4)", "base VariantSse2 VariantSsse3", "VariantSse42"),
    ("vpextrw $1, %xmm0, (%rdi)", "VariantSse42", "VariantAvx"),
    ("popcnt %eax, %ecx", "VariantSse2 VariantSsse3", "VariantSse42 VariantAvx VariantAvx512"),
    ("crc32l %eax, %ecx", "VariantSsse3", "VariantSse42"),
    ("vpaddd %xmm0, %xmm1, %xmm2", "VariantSse2 VariantSse42", "VariantAvx VariantAvx2 VariantAvx512"),
    ("vaddps %ymm0, %ymm1, %ymm2", "VariantSse42", "VariantAvx"),
    ("vmovdqu %ymm0, (%rdi)", "VariantSse42", "VariantAvx"),
    ("vptest %ymm0, %ymm1", "VariantSse42", "VariantAvx"),
    ("vcmpneq_oqps %ymm0, %ymm1, %ymm2", "VariantSse42", "VariantAvx VariantAvx512"),
    ("vzeroupper", "VariantSse42", "VariantAvx"),
    ("vpaddd %ymm0, %ymm1, %ymm2", "VariantAvx", "VariantAvx2"),
    ("vmovntdqa (%rdi), %ymm0", "VariantAvx", "VariantAvx2"),
    ("vpmovmskb %ymm0, %eax", "VariantAvx", "VariantAvx2"),
    ("vbroadcastss (%rdi), %ymm0", "VariantSse42", "VariantAvx"),
    ("vbroadcastss %xmm1, %ymm0", "VariantAvx", "VariantAvx2"),
    ("vpbroadcastb %xmm1, %xmm0", "VariantAvx", "VariantAvx2"),
    ("vinserti128 $1, %xmm0, %ymm1, %ymm2", "VariantAvx", "VariantAvx2"),
    ("vfmadd231ps %xmm0, %xmm1, %xmm2", "VariantAvx", "VariantAvx2 VariantAvx512"),
    ("tzcnt %eax, %ecx", "base VariantSse2 VariantSse42 VariantAvx", "VariantAvx2"),
    ("rep bsf %eax, %ecx", "base VariantSse2 VariantSse42 VariantAvx", "VariantAvx2"),
    ("andn %eax, %ecx, %edx", "VariantAvx", "VariantAvx2"),
    ("shlx %eax, %ecx, %edx", "VariantAvx", "VariantAvx2"),
    ("lzcnt %eax, %ecx", "frame base VariantSse2 VariantAvx2 VariantAvx512", ""),
    ("rep bsr %eax, %ecx", "frame base VariantSse2 VariantAvx2 VariantAvx512", ""),
    ("movbe (%rdi), %eax", "VariantSse2 VariantSsse3 VariantAvx2 VariantAvx512", ""),
    ("adcx %eax, %ecx", "VariantAvx2 VariantAvx512", ""),
    ("vcvtps2ph $0, %xmm0, %xmm1", "VariantAvx VariantAvx2 VariantAvx512", ""),
    ("aesenc %xmm0, %xmm1", "VariantSse42 VariantAvx512", ""),
    ("pclmulqdq $0, %xmm0, %xmm1", "VariantSse42 VariantAvx512", ""),
    ("sha1msg1 %xmm0, %xmm1", "VariantSse42 VariantAvx512", ""),
    ("rdrand %eax", "VariantAvx512", ""),
    ("prefetchw (%rdi)", "frame base VariantSse2 VariantAvx", "VariantAvx2 VariantAvx512"),
    ("vpaddd %zmm0, %zmm1, %zmm2", "VariantAvx2", "VariantAvx512"),
    ("vpaddd %ymm16, %ymm1, %ymm2", "VariantAvx2", "VariantAvx512"),
    ("vaddps %xmm31, %xmm1, %xmm2", "VariantAvx2", "VariantAvx512"),
    ("vpaddd %ymm0, %ymm1, %ymm2{%k1}", "VariantAvx2", "VariantAvx512"),
    ("vmovdqu8 %ymm0, (%rdi)", "VariantAvx2", "VariantAvx512"),
    ("vpcmpub $2, %zmm0, %zmm1, %k1", "VariantAvx2", "VariantAvx512"),
    ("kmovw %eax, %k1", "VariantAvx2", "VariantAvx512"),
    ("vpternlogd $1, %ymm0, %ymm1, %ymm2", "VariantAvx2", "VariantAvx512"),
    ("vplzcntd %zmm0, %zmm1", "VariantAvx2", "VariantAvx512"),
    ("vpmullq %zmm0, %zmm1, %zmm2", "VariantAvx2", "VariantAvx512"),
    ("{evex} vpaddd %ymm0, %ymm1, %ymm2", "base VariantAvx VariantAvx2", "VariantAvx512"),
    ("{evex} vaddps %fs:(%rdi), %xmm1, %xmm2", "VariantAvx VariantAvx2", "VariantAvx512"),
    ("vaddps (%rdi){1to4}, %xmm1, %xmm2", "VariantAvx VariantAvx2", "VariantAvx512"),
    ("vpaddd (%edi){1to8}, %ymm1, %ymm2", "VariantAvx2", "VariantAvx512"),
    ("vaddss {rn-sae}, %xmm0, %xmm1, %xmm2", "VariantAvx VariantAvx2", "VariantAvx512"),
    ("vcvtss2si {rz-sae}, %xmm0, %eax", "VariantAvx VariantAvx2", "VariantAvx512"),
    ("vpsrldq $3, (%rdi), %xmm1", "VariantAvx2", "VariantAvx512"),
    ("vpermb %zmm0, %zmm1, %zmm2", "VariantAvx512", ""),
    ("vpopcntd %zmm0, %zmm1", "VariantAvx512", ""),
    ("vpopcntb %zmm0, %zmm1", "VariantAvx512", ""),
    ("vpdpbusd %zmm0, %zmm1, %zmm2", "VariantAvx512", ""),
    ("vpmadd52luq %zmm0, %zmm1, %zmm2", "VariantAvx512", ""),
    ("vpcompressb %zmm0, %zmm1", "VariantAvx512", ""),
    ("vpshldd $1, %zmm0, %zmm1, %zmm2", "VariantAvx512", ""),
    ("vaddph %zmm0, %zmm1, %zmm2", "VariantAvx512", ""),
    ("vcvtneps2bf16 %zmm0, %ymm1", "VariantAvx512", ""),
    ("vgf2p8mulb %zmm0, %zmm1, %zmm2", "VariantAvx512", ""),
    ("vaesenc %zmm0, %zmm1, %zmm2", "VariantAvx512", ""),
    ("rep movsb", "", "frame base VariantSse2 VariantAvx512"),
    ("lock xaddl %eax, (%rdi)", "", "frame base"),
]


class Instructions(Planted):
    def test_every_instruction(self):
        unknown = []
        for instruction, refusing, allowing in INSTRUCTIONS:
            path = self.assembled(instruction)
            if path is None:
                unknown.append(instruction)
                continue
            for part in refusing.split():
                with self.subTest(instruction, part=part):
                    self.assertNotEqual(checks.instructions(part, path), [])
            for part in allowing.split():
                with self.subTest(instruction, part=part):
                    self.assertEqual(checks.instructions(part, path), [])
        # An older assembler may lack a few instructions.
        self.assertLess(len(unknown), 3, unknown)

    def test_compiled_code(self):
        source = "typedef int V __attribute__((vector_size(32))); V f(V a, V b) { return a + b; }"
        path = self.object(source, "-mavx2")
        self.assertReports(checks.instructions("VariantAvx", path), "vpaddd")
        self.assertEqual(checks.instructions("VariantAvx2", path), [])

    def test_code_for_another_target(self):
        source = "typedef int V __attribute__((vector_size(32))); " \
            "__attribute__((target(\"avx512vl\"))) V f(V a, int* b) { return a + *b; }"
        self.assertReports(checks.instructions("VariantAvx2", self.object(source, "-O2", "-mavx2")), "is encoded for AVX-512")

    # Bytes between the instructions, as data in the code: some are no instruction, others take the bytes of the next.
    def test_bytes_that_are_no_instruction(self):
        self.assertReports(checks.instructions("base", self.assembled("ret; .byte 0x06; ret")), "(bad) is in no list")

    def test_a_prefix_alone(self):
        for prefix in (0xF0, 0x48, 0x66):
            path = self.assembled(f"ret; .byte {prefix}; g: ret")
            self.assertReports(checks.instructions("base", path), "is in no list")

    def test_a_jump_between_instructions(self):
        path = self.assembled("jmp 1f; .byte 0xB8; 1: ret; .byte 0, 0, 0; ret")
        self.assertReports(checks.instructions("base", path), "1 jumps between the instructions of .text")

    def test_zeros_are_code(self):
        path = self.assembled("ret; .zero 64; aesenc %xmm0, %xmm1")
        zeros = [i for i in binaries.instructions(path) if i.code == "00 00"]
        self.assertEqual(len(zeros), 32)


class Initialisers(Planted):
    def test_none(self):
        self.assertEqual(checks.initialisers("VariantSse2", self.object(OWN_NAMES)), [])

    def test_a_dynamic_initialiser(self):
        path = self.object("int roll(); static volatile int rolled = roll();")
        self.assertReports(checks.initialisers("VariantSse2", path), ".init_array", "_GLOBAL__sub_I")

    def test_a_constructor_function(self):
        path = self.object("[[gnu::constructor]] static void early() {}")
        self.assertReports(checks.initialisers("VariantSse2", path), ".init_array")

    def test_old_constructors(self):
        path = self.object('asm(".section .ctors,\\"aw\\"; .quad 0; .text");')
        self.assertReports(checks.initialisers("VariantSse2", path), ".ctors")


class Memory(Planted):
    def test_compiled_code(self):
        self.assertEqual(checks.stackOfObject(self.object(OWN_NAMES)), [])

    def test_an_object_that_wants_code_on_the_stack(self):
        path = self.assembled('ret; .section .note.GNU-stack,"x",@progbits')
        self.assertReports(checks.stackOfObject(path), "wants code")

    def test_an_object_that_says_nothing(self):
        self.assertReports(checks.stackOfObject(self.assembled("ret")), "does not say")

    def test_code_that_can_be_written(self):
        self.assertEqual(checks.codeInData(self.object(OWN_NAMES)), [])
        path = self.assembled('ret; .section .mine,"awx",@progbits; ret')
        self.assertReports(checks.codeInData(path), "code in .mine can be written")

    def test_a_function_among_data(self):
        path = self.assembled('ret; .section .mine,"aw",@progbits; .type g, @function; g: ret')
        self.assertReports(checks.codeInData(path), "g is in .mine, which holds no code")

    def test_libraries(self):
        plain = self.compiled("int f() { return 1; }", "-shared", name="plain.so")
        self.assertEqual(checks.memoryOfLibrary(plain), [])
        stack = self.compiled("int f() { return 1; }", "-shared", "-Wl,-z,execstack", name="stack.so")
        self.assertReports(checks.memoryOfLibrary(stack), "executable")
        data = self.compiled("int f() { return 1; }", "-shared", "-nostdlib", "-Wl,--omagic", name="data.so")
        self.assertReports(checks.memoryOfLibrary(data), "can be written and executed")
        text = self.compiled('int data; asm(".text; f: movabs $data, %rax; ret");', "-shared", "-Wl,-z,notext", name="text.so")
        self.assertReports(checks.memoryOfLibrary(text), "write into code")


# One row of eight words for each of six entries, as the library lays them out.
TABLE = """
namespace Zorvan::Primitives {
int variantIndex = -1;
using Routine = int (*)(int);
struct Row { Routine routine[8]; };
int routine(int i) { return i; }
extern %s const Row table[6];
%s const Row table[6] = {{{&routine}}, {{&routine}}, {{&routine}}, {{&routine}}, {{&routine}}, {{&routine}}};
#define ROUTINE(row) table[row].routine[1 + (long)variantIndex]
"""


class Rows(Planted):
    def library(self, attribute, *options):
        return self.compiled(TABLE % (attribute, attribute) + "}", "-shared", *options, name="rows.so")

    def test_rows_in_read_only_memory(self):
        self.assertEqual(checks.rows(self.library("", "-Wl,-z,relro"), 6), [])

    def test_rows_that_stay_writable(self):
        path = self.library('__attribute__((section(".data.mine,\\"aw\\",@progbits#")))')
        self.assertReports(checks.rows(path, 6), "is in .data", "stays writable")

    def test_rows_without_read_only_memory(self):
        self.assertReports(checks.rows(self.library("", "-Wl,-z,norelro"), 6), "stays writable")

    def test_rows_beyond_their_section(self):
        self.assertReports(checks.rows(self.library("", "-Wl,-z,relro"), 1000), "in no one section")

    def test_a_library_without_rows(self):
        self.assertReports(checks.rows(self.compiled("int f() { return 1; }", "-shared", name="none.so"), 6), "no symbol")


class Stubs(Planted):
    SOURCE = TABLE % ("", "") + """
    int first(int i) { return ROUTINE(0)(i); }
    int branching(int i) { if (variantIndex < 0) return 0; return ROUTINE(1)(i); }
    int calling(int i) { return ROUTINE(2)(i) + 1; }
    int strange(int i) { return ROUTINE(5)(i); }
    int changing(int i) { return ROUTINE(4)(i + 1); }
    int stacking(int, int, int, int, int, int, int i) { *(volatile int*)&i = 7; return ROUTINE(5)(1); }
    }
    """
    NAMES = ["first", "branching", "calling", "strange", "changing", "stacking"]

    def complaints(self, source, names, *options):
        path = self.compiled(source, "-O2", "-shared", *options, name="stubs.so")
        return checks.stubs(path, names)

    def test_all_but_the_first(self):
        complaints = self.complaints(self.SOURCE, self.NAMES)
        self.assertFalse(any(" first " in c for c in complaints), complaints)
        self.assertReports(complaints, *(f"the stub of {name} " for name in self.NAMES[1:]))
        self.assertReports(complaints, "strange does not jump through its own row")

    def test_missing_stub(self):
        self.assertReports(self.complaints(self.SOURCE, ["first", "absent"]), "0 stubs absent")

    def test_code_that_no_compiler_makes(self):
        path = self.compiled(self.SOURCE, "-O2", "-shared", name="stubs.so")
        symbol = {s.name.split("::")[-1]: s.address for s in binaries.definedSymbols(path)}
        code = [i for i in binaries.instructions(path) if "::first(" in i.function]
        code = code[:1 + next(n for n, i in enumerate(code) if i.name == "jmp")]

        def why(instructions):
            return checks.stub(instructions, symbol["variantIndex"], symbol["table"])

        call = binaries.Instruction(code[0].address, code[0].function, "call", "1000", "")
        jump = call._replace(name="jne")
        moved = [i._replace(address=i.address + 8) for i in code]
        self.assertIsNone(why(code))
        self.assertEqual(why([call, *code]), "has call 1000")
        self.assertEqual(why([code[0], jump, *code[1:]]), "has jne 1000")
        self.assertEqual(why([code[0], *code]), "does not load the index once")
        self.assertEqual(why(code[:-1]), "does not end in its one jump")
        self.assertEqual(why(moved), "does not start at a multiple of 16")


class Streaming(Planted):
    """A library with one entry of each form, in assembly: the first has the code under test, the others stream."""

    BY_FORM = ["ippiSet_8u_C1R", "ippiCopy_8u_C1R", "ippiCopy_32s_C1MR", "ippiSet_16u_C1R", "ippiSet_32s_C1MR",
               "ippiConvert_32s8u_C1R", "ippiConvert_32s32f_C1R", "ippiAdd_32f_C1R", "ippiSqr_8u_C1RSfs",
               "ippiSqr_32f_C1R", "ippiSqrt_32f_C1R", "ippiAbs_32f_C1R", "ippiNot_8u_C1R", "ippiCompareC_16s_C1R",
               "ippiCompareC_8u_C1R", "ippiFilterLaplaceBorder_8u_C1R", "ippiMorphErodeBorder_8u_C1R",
               "ippiMorphErodeBorder_32f_C1R", "ippiMorphOpenBorder_8u_C1R"]
    STORE = "movntdq %xmm0, (%rdi)\n"
    TABLE = """lea .Ltable(%rip), %rax
        movslq (%rax,%rdi,4), %rdx
        add %rdx, %rax
        notrack jmp *%rax
        .Lfirst: movntdq %xmm0, (%rdi)
        sfence
        .Lsecond: ret
        .section .rodata
        .Ltable: .long .Lfirst - .Ltable, .Lsecond - .Ltable
        .text"""

    def complaints(self, code, entry="ippiSet_8u_C1R", variant="VariantSse2", more=""):
        names = [entry] + [name for name in self.BY_FORM if name != entry]
        text = ".section .rodata; .quad 0; .text\n"
        for v in streaming.VARIANTS:
            for name in names:
                mangled = f"_ZN6Zorvan10Primitives8RoutinesINS0_{len(v)}{v}EE{len(name)}{name}Ev"
                streams = self.STORE if streaming.isExpected(name, v) else ""
                fence = "sfence\n" if streams and name != streaming.NOT_WAITING else ""
                body = code if (name, v) == (entry, variant) else streams + fence + "ret"
                text += f".globl {mangled}\n.type {mangled}, @function\n{mangled}:\n{body}\n"
        path = os.path.join(self.folder.name, "streaming.so")
        subprocess.run([CXX, "-shared", "-nostdlib", "-x", "assembler", "-", "-o", path], input=text + more, text=True,
                       check=True)
        return streaming.streaming(paths.Code(path), names)

    def assertWaits(self, *code, **where):
        self.assertEqual(self.complaints(*code, **where), [])

    def assertReturnsBefore(self, *code, **where):
        complaints = self.complaints(*code, **where)
        self.assertEqual(len(complaints), 1, complaints)
        self.assertIn("returns before its streaming stores are visible", complaints[0])

    def test_one_path(self):
        self.assertWaits(self.STORE + "sfence; ret")
        self.assertReturnsBefore(self.STORE + "ret")
        self.assertReturnsBefore("sfence;" + self.STORE + "ret")

    def test_one_path_of_two(self):
        self.assertWaits("test %rdi, %rdi; je 1f;" + self.STORE + "sfence; 1: ret")
        self.assertReturnsBefore(self.STORE + "test %rdi, %rdi; je 1f; sfence; 1: ret")

    def test_a_loop(self):
        self.assertWaits("1:" + self.STORE + "dec %rsi; jne 1b; sfence; ret")
        self.assertReturnsBefore("1: sfence;" + self.STORE + "dec %rsi; jne 1b; ret")

    def test_a_call(self):
        helper = ".type helper, @function\nhelper: {}\nret\n"
        self.assertWaits("call helper; sfence; ret", more=helper.format(self.STORE))
        self.assertReturnsBefore("call helper; ret", more=helper.format(self.STORE))
        self.assertWaits(self.STORE + "jmp helper", more=helper.format("sfence"))
        self.assertReturnsBefore(self.STORE + "jmp helper", more=helper.format("nop"))

    def test_a_call_by_address(self):
        helper = ".type helper, @function\nhelper: {}\nret\n"
        call = "lea helper(%rip), %rax; call *%rax; ret"
        self.assertWaits(call, more=helper.format(self.STORE + "sfence"))
        self.assertReturnsBefore(call, more=helper.format(self.STORE))

    def test_a_table(self):
        self.assertWaits(self.TABLE)
        self.assertReturnsBefore(self.TABLE.replace("sfence", "nop"))

    def test_loops_that_choose_the_kind_of_store(self):
        where = {"entry": "ippiMorphErodeBorder_8u_C1R", "variant": "VariantAvx512"}
        code = self.STORE + "test %rdi, %rdi; je 1f; {}; 1: ret"
        self.assertWaits(code.format("sfence"), **where)
        self.assertReturnsBefore(code.format("nop"), **where)
        self.assertReturnsBefore("sfence;" + code.format("nop"), **where)
        self.assertReturnsBefore(code.format("nop"), "ippiMorphOpenBorder_8u_C1R", "VariantAvx512")

    def test_plain_stores(self):
        self.assertReports(self.complaints("movdqa %xmm0, (%rdi); ret"), "VariantSse2 has no streaming stores")
        self.assertReports(self.complaints("movdqa %xmm0, (%rdi); sfence; ret"), "has no streaming stores", "has a fence")

    def test_streaming_stores_where_none_belong(self):
        complaints = self.complaints(self.STORE + "sfence; ret", "ippiNot_8u_C1R", "VariantSsse3")
        self.assertEqual(complaints, ["ippiNot_8u_C1R of VariantSsse3 has streaming stores"])

    def test_the_entry_that_does_not_wait(self):
        self.assertWaits(self.STORE + "ret", "ippiAdd_32f_C1R", "VariantSse42")
        self.assertEqual(self.complaints(self.STORE + "sfence; ret", "ippiAdd_32f_C1R", "VariantSse42"),
                         ["ippiAdd_32f_C1R of VariantSse42 has a fence"])

    def test_a_call_of_another_entry(self):
        other = "_ZN6Zorvan10Primitives8RoutinesINS0_11VariantSse2EE15ippiCopy_8u_C1REv"
        self.assertWaits(f"call {other};" + self.STORE + "sfence; ret")
        self.assertReports(self.complaints(f"jmp {other}"), "has no streaming stores")

    def test_an_entry_that_is_missing(self):
        self.assertReports(streaming.streaming(paths.Code(self.compiled("int f() { return 1; } const char* text = \"abc\";",
                           "-shared", name="none.so")), ["ippiAdd_32f_C1R"]),
                           "ippiAdd_32f_C1R of VariantSse42 is not in the library", "no entry is named ippiCopy")


class Includes(Planted):
    def complaints(self, path, included):
        file = os.path.join(self.folder.name, path)
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with open(file, "w", encoding="utf-8") as out:
            out.write(f'// #include "zorvan/a comment"\n#include <cstdint>\n#  include "{included}"\n')
        return includes.complaints(self.folder.name)

    def test_downward(self):
        self.assertEqual(self.complaints("operations/logical/Facade.h", "zorvan/primitives/frame/Entries.h"), [])
        self.assertEqual(self.complaints("primitives/kernels/fill.h", "zorvan/primitives/kernels/row.h"), [])
        self.assertEqual(self.complaints("ipp.h", "zorvan/operations/logical/Facade.h"), [])

    def test_upward_and_past_the_entries(self):
        for path, included in [("operations/a/Facade.h", "zorvan/primitives/kernels/plan.h"),
                               ("methods/Method.h", "zorvan/operations/a/Facade.h"),
                               ("containers/Image.cpp", "zorvan/methods/Method.h"),
                               ("primitives/kernels/fill.h", "zorvan/methods/Method.h"),
                               ("primitives/frame/Table.cpp", "zorvan/primitives/kernels/fill.h"),
                               ("foundation/Types.h", "zorvan/primitives/frame/Entries.h"),
                               ("foundation/Status.h", "zorvan/ipp.h")]:
            self.assertReports(self.complaints(path, included), f"{path}:3: {includes.layer(path)} includes {included}")

    def test_another_root(self):
        self.assertReports(self.complaints("foundation/Types.h", "Status.h"), "foundation includes Status.h")

    def test_a_folder_without_a_layer(self):
        self.assertReports(self.complaints("news/File.h", "zorvan/foundation/Status.h"), "news/File.h: is in no layer")


if __name__ == "__main__":
    unittest.main()
