"""The instructions and registers that the objects of a variant, the frame and the rest of the library may use.

An instruction belongs to the feature whose words match its name, as objdump prints it in Intel syntax. A name that
matches no feature is refused: a new instruction is entered here, under its feature. The words are regular
expressions.
"""

import functools
import re

FEATURES = {
    "general": r"""
        mov movabs movzx movsx movsxd lea push pop xchg xadd cmpxchg bswap leave
        add adc sub sbb inc dec neg not and or xor cmp test mul imul div idiv
        shl shr sar rol ror shld shrd bt bts btr btc bsf bsr cbw cwde cdqe cwd cdq cqo
        cmov(n?[abcglops]|n?[abgl]e|n?[ez]|p[eo])  set(n?[abcglops]|n?[abgl]e|n?[ez]|p[eo])
        j(n?[abcglops]|n?[abgl]e|n?[ez]|p[eo])     jmp call ret hlt ud2 int3 nop endbr64 pause cld std
        (movs|stos|cmps|scas|lods)[bwdq]?
    """,
    "processor": "cpuid xgetbv",
    # Part of no tier. Every 64-bit processor of the two newest tiers executes or ignores it: it is a hint.
    "write-hint": "prefetchw",
    "SSE": r"""
        mov(aps|ups|ss|hps|lps|hlps|lhps|mskps|ntps) shufps unpck[hl]ps
        (add|sub|mul|div|sqrt|min|max|rcp|rsqrt)[ps]s (and|andn|or|xor)ps
        cmp(eq|lt|le|unord|neq|nlt|nle|ord)?[ps]s u?comiss cvtt?ss2si cvtsi2ss
        sfence prefetch(nta|t[012]) ldmxcsr stmxcsr
    """,
    "SSE2": r"""
        mov(apd|upd|sd|hpd|lpd|mskpd|ntpd|d|q|dqa|dqu|ntdq|nti) shufpd unpck[hl]pd lfence mfence clflush
        (add|sub|mul|div|sqrt|min|max)[ps]d (and|andn|or|xor)pd
        cmp(eq|lt|le|unord|neq|nlt|nle|ord)?[ps]d u?comisd cvtt?sd2si cvtsi2sd
        cvt(dq2p[sd]|t?p[sd]2dq|pd2ps|ps2pd|sd2ss|ss2sd)
        padd([bwdq]|u?s[bw]) psub([bwdq]|u?s[bw]) pmul(lw|hw|huw|udq) pmaddwd pavg[bw] psadbw
        p(min|max)(ub|sw) pcmp(eq|gt)[bwd] pand pandn por pxor psll[wdq] psrl[wdq] psra[wd] ps[lr]ldq
        packss(wb|dw) packuswb punpck[hl](bw|wd|dq|qdq) pshuf(d|lw|hw) pextrw pinsrw pmovmskb maskmovdqu
    """,
    "SSE3": "addsubp[sd] haddp[sd] hsubp[sd] lddqu mov(ddup|shdup|sldup)",
    "SSSE3": r"pabs[bwd] palignr ph(add|sub)(w|d|sw) pmaddubsw pmulhrsw pshufb psign[bwd]",
    "SSE4.1": r"""
        blendv?p[sd] dpp[sd] extractps insertps movntdqa mpsadbw packusdw pblend(vb|w) pcmpeqq pextr[bdq]
        phminposuw pinsr[bdq] p(min|max)(sb|sd|ud|uw) pmov[sz]x(b[wdq]|w[dq]|dq) pmuldq pmulld ptest
        round[ps][sd]
    """,
    "SSE4.2": "pcmp[ei]str[im] pcmpgtq crc32 popcnt",
    # And every vector instruction of the features above with a v before its name.
    "AVX": r"""
        vbroadcast(ss|sd|f128) vinsertf128 vextractf128 vmaskmovp[sd] vperm2f128 vpermilp[sd] vtestp[sd]
        vzeroupper vzeroall vcmp\w+[ps][sd]
    """,
    "AVX2": r"""
        vbroadcasti128 vextracti128 vinserti128 vperm2i128 vperm(d|q|ps|pd) vpbroadcast[bwdq] vpblendd
        vpmaskmov[dq] vps[lr]lv[dq] vpsravd vp?gather[dq](d|q|ps|pd)
    """,
    "FMA": r"vf(n?m(add|sub)(132|213|231)[ps][sd]|m(addsub|subadd)(132|213|231)p[sd])",
    "BMI1": "andn bextr blsi blsmsk blsr tzcnt",
    "BMI2": "bzhi mulx pdep pext rorx sarx shlx shrx",
    "AVX-512F": r"""
        valign[dq] vblendmp[sd] vpblendm[dq] vbroadcast[fi](32x4|64x4) vextract[fi](32x4|64x4)
        vinsert[fi](32x4|64x4) vshuf[fi](32x4|64x2) vmovdq[au](32|64) vp(and|andn|or|xor)[dq] vpternlog[dq]
        vcompressp[sd] vpcompress[dq] vexpandp[sd] vpexpand[dq] vpabsq vp(min|max)[su]q vpro[lr]v?[dq] vpsrav?q
        vptestn?m[dq] vpcmp(eq|lt|le|neq|nlt|nle|gt)?u?[dq] vperm[it]2(d|q|ps|pd) vpmovu?s?(d[bw]|q[bwd])
        vcvtudq2p[sd] vcvtt?p[sd]2udq vcvtusi2s[sd] vcvtt?s[sd]2usi vp?scatter[dq](d|q|ps|pd)
        vfixupimm[ps][sd] vgetexp[ps][sd] vgetmant[ps][sd] vrcp14[ps][sd] vrsqrt14[ps][sd] vrndscale[ps][sd]
        vscalef[ps][sd] k(and|andn|or|xor|xnor|not|mov|ortest|shiftl|shiftr)w kunpckbw
    """,
    "AVX-512CD": "vpconflict[dq] vplzcnt[dq] vpbroadcastm(b2q|w2d)",
    "AVX-512BW": r"""
        vmovdqu(8|16) vpblendm[bw] vpermw vperm[it]2w vps[lr]lvw vpsravw vptestn?m[bw] vpmovu?s?wb vpmovm2[bw]
        vpmov[bw]2m vdbpsadbw vpcmp(eq|lt|le|neq|nlt|nle|gt)?u?[bw] kunpck(wd|dq)
        k(and|andn|or|xor|xnor|not|mov|ortest|shiftl|shiftr|add|test)[dq]
    """,
    "AVX-512DQ": r"""
        vbroadcast[fi](32x2|64x2|32x8) vextract[fi](64x2|32x8) vinsert[fi](64x2|32x8) vpmullq vrange[ps][sd]
        vreduce[ps][sd] vfpclass[ps][sd][xyz]? vpmovm2[dq] vpmov[dq]2m vcvtt?p[sd]2u?qq vcvtu?qq2p[sd]
        k(and|andn|or|xor|xnor|not|mov|ortest|shiftl|shiftr)b kaddb kaddw ktest[bw]
    """,
}

REGISTERS = {
    "xmm": r"xmm(\d|1[0-5])",
    "ymm": r"ymm(\d|1[0-5])",
    "xmm16 to ymm31": r"[xy]mm(1[6-9]|2\d|3[01])",
    "zmm": r"zmm\d+",
    "k": r"k[0-7]",
    "mmx": r"mm[0-7]",
    "x87": r"st(\(\d\))?",
}

# For each type of object the features and register classes that it adds to another type. No type includes lzcnt,
# movbe, half floats, AES and so on.
PARTS = {
    "frame": (None, "general processor", []),
    "general": (None, "general", []),
    "base": ("general", "SSE SSE2", ["xmm"]),
    "VariantSse2": ("base", "", []),
    "VariantSsse3": ("VariantSse2", "SSE3 SSSE3", []),
    "VariantSse42": ("VariantSsse3", "SSE4.1 SSE4.2", []),
    "VariantAvx": ("VariantSse42", "AVX", ["ymm"]),
    "VariantAvx2": ("VariantAvx", "AVX2 FMA BMI1 BMI2 write-hint", []),
    "VariantAvx512": ("VariantAvx2", "AVX-512F AVX-512CD AVX-512BW AVX-512DQ", ["xmm16 to ymm31", "zmm", "k"]),
}

# Integer instructions on ymm registers need AVX2, but have the names of AVX.
INTEGER_ON_YMM = re.compile("vp(?!test|ermilp|erm2f128).*|vmpsadbw|vmovntdqa")
# So does the broadcast from a register.
BROADCAST_OF_REGISTER = re.compile(r"vbroadcasts[sd] [xyz]mm\d+,xmm\d+")

# The instruction of SSE2 has a register as its destination, that of SSE4.1 also memory.
WORD_TO_MEMORY = re.compile(r"pextrw (?:WORD PTR )?(?:[cdefgs]s:)?\[.*")
# The first byte after the prefixes of all vector instructions of AVX-512. With registers below 16 only it tells such an
# instruction from that of AVX, or broadcast and rounding, which objdump prints among the operands.
CODE_OF_AVX512 = re.compile(r"(?:(?:2e|36|3e|26|64|65|67) )*62 ")

VECTOR_FEATURES_BEFORE_AVX = ["SSE", "SSE2", "SSE3", "SSSE3", "SSE4.1", "SSE4.2"]


def _pattern(words):
    return re.compile("|".join(f"(?:{word})" for word in words.split()))


_features = {name: _pattern(words) for name, words in FEATURES.items()}
_registers = {name: re.compile(rf"(?<![\w.]){words}(?![\w.])") for name, words in REGISTERS.items()}


@functools.cache
def featuresOf(name):
    """The features with an instruction of this name."""
    found = {feature for feature, pattern in _features.items() if pattern.fullmatch(name)}
    if name.startswith("v") and any(_features[f].fullmatch(name[1:]) for f in VECTOR_FEATURES_BEFORE_AVX):
        found.add("AVX")
    return found


@functools.cache
def allowed(part):
    """The features and the register classes of a type of object."""
    below, features, registers = PARTS[part]
    inherited = allowed(below) if below else (set(), set())
    return inherited[0] | set(features.split()), inherited[1] | set(registers)


def complaint(part, name, operands, code):
    """Why an object of this type may not use the instruction of these bytes; None if it may."""
    return _complaint(part, name, operands, CODE_OF_AVX512.match(code) is not None)


@functools.cache
def _complaint(part, name, operands, hasCodeOfAvx512):
    features, registers = allowed(part)
    needed = featuresOf(name)
    if not needed:
        return "is in no list of instructions"
    if not needed & features:
        return "needs " + " or ".join(sorted(needed))
    for register, pattern in _registers.items():
        if register not in registers and pattern.search(operands):
            return f"uses {register} registers"
    if "AVX-512F" not in features and hasCodeOfAvx512:
        return "is encoded for AVX-512"
    if "SSE4.1" not in features and WORD_TO_MEMORY.fullmatch(f"{name} {operands}"):
        return "needs SSE4.1 to write memory"
    if "AVX2" not in features:
        if "ymm" in operands and INTEGER_ON_YMM.fullmatch(name):
            return "needs AVX2 for ymm registers"
        if BROADCAST_OF_REGISTER.fullmatch(f"{name} {operands}"):
            return "needs AVX2 to broadcast a register"
    return None
