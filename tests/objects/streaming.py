"""Which entries have streaming stores in which variants, and whether they wait for these stores."""

import re

import instruction_sets

VARIANTS = [part for part in instruction_sets.PARTS if part.startswith("Variant")]

# Each form of entries with the oldest and the newest variant that writes large images by streaming stores.
STREAMING = [
    ("ippiCopy_.*_C1R", "VariantSse2", "VariantAvx512"),
    ("ippiCopy_32[sf]_C1MR", "VariantSse2", "VariantSse2"),
    ("ippiSet_(8u|32[sf])_C1R", "VariantSse2", "VariantAvx512"),
    ("ippiSet_16[us]_C1R", "VariantAvx2", "VariantAvx512"),
    ("ippiSet_(16[us]|32[sf])_C1MR", "VariantSse2", "VariantSse2"),
    ("ippiConvert_32s8u_C1R", "VariantSse42", "VariantAvx"),
    ("ippiConvert_32s32f_C1R", "VariantSse42", "VariantAvx512"),
    ("ippiAdd_32f_C1R", "VariantSse2", "VariantSse42"),
    ("ippiSqrt?_8u_C1RSfs", "VariantSse2", "VariantAvx512"),
    ("ippiSqr_32f_C1R", "VariantAvx", "VariantAvx512"),
    ("ippiSqrt_32f_C1R", "VariantAvx512", "VariantAvx512"),
    ("ippiAbs_32f_C1R", "VariantAvx2", "VariantAvx512"),
    ("ippiNot_8u_C1R", "VariantSse42", "VariantAvx512"),
    ("ippiCompareC_16s_C1R", "VariantSse2", "VariantAvx512"),
    ("ippiCompareC_(8u|32f)_C1R", "VariantSse2", "VariantAvx"),
    ("ippiFilterLaplaceBorder_.*_C1R", "VariantSse2", "VariantAvx512"),
    ("ippiMorph(Erode|Dilate|Open|Close)Border_8u_C1R", "VariantSsse3", "VariantAvx512"),
    ("ippiMorph(Erode|Dilate|Open|Close)Border_32f_C1R", "VariantSse2", "VariantAvx512"),
]
# The forms that work in place may share the code of the others.
MAY_SHARE = re.compile("ippi(Not_8u_C1IR|Sqrt?_(8u_C1IRSfs|32f_C1IR))")
# One loop has the stores of both kinds, and a fence behind it if the plan has chosen streaming ones. Two loops have no
# fence between them: the first writes an intermediate image, always by plain stores.
CHOOSING_IN_A_LOOP = re.compile("ippiMorph(Erode|Dilate)Border_.*")
CHOOSING_IN_TWO_LOOPS = re.compile("ippiMorph(Open|Close)Border_.*")
# Threads that read the result by a plain flag may see old pixels: docs/variants.md says so.
NOT_WAITING = "ippiAdd_32f_C1R"

STREAMING_STORE = re.compile("v?movnt(dq|i|p[sd]|q)")
ROUTINE = re.compile(r"(?:.* )?Zorvan::Primitives::Routines<Zorvan::Primitives::(Variant\w+)>::(\w+)\([^\[]*\)")


def isExpected(entry, variant):
    position = VARIANTS.index(variant)
    return any(re.fullmatch(form, entry) and VARIANTS.index(oldest) <= position <= VARIANTS.index(newest)
               for form, oldest, newest in STREAMING)


class Stores:
    """The streaming stores of each routine. A routine that calls that of another entry leaves its stores to it."""

    def __init__(self, code):
        self.code = code
        self.routines = {n: found.groups() for name, n in code.functions() if (found := ROUTINE.fullmatch(name))}
        self.allNames, self.ends, self.mayWaitFrom = {}, {}, {}

    def _calledFrom(self, n):
        following, called = self.code.next(n)
        isRoutine = self.routines.keys()
        return tuple(m for m in following if m not in isRoutine), tuple(m for m in called if m not in isRoutine)

    def name(self, n):
        return self.code.instructions[n].name

    def own(self, start):
        """The places that the function reaches without calls."""
        found, waiting = set(), [start]
        while waiting:
            n = waiting.pop()
            if n not in found:
                found.add(n)
                waiting += self._calledFrom(n)[0]
        return found

    def names(self, start):
        """The names of all instructions that the function reaches, by calls too."""
        if start not in self.allNames:
            self.allNames[start] = set()  # for a function that calls itself
            own = self.own(start)
            called = {m for n in own for m in self._calledFrom(n)[1]}
            self.allNames[start] = {self.name(n) for n in own}.union(*(self.names(m) for m in called))
        return self.allNames[start]

    def waits(self, start):
        """Whether a fence stands on every path from a streaming store to the function's end."""
        return True not in self._pendingAtEnd(start, False)

    def mayWait(self, start):
        """Whether a path leads from each streaming store to a fence, in the same function or behind its call."""
        if start not in self.mayWaitFrom:
            self.mayWaitFrom[start] = True  # for a function that calls itself
            storing = [n for n in self.own(start) if STREAMING_STORE.fullmatch(self.name(n)) or
                       not all(self.mayWait(m) for m in self._calledFrom(n)[1])]
            self.mayWaitFrom[start] = all(
                any(self.name(n) == "sfence" for n in self.own(store)) for store in storing)
        return self.mayWaitFrom[start]

    def _pendingAtEnd(self, start, isPending):
        """Whether streamed stores may be pending when the function returns, if they are when it begins: one or both of
        True and False."""
        if (start, isPending) in self.ends:
            return self.ends[start, isPending]
        self.ends[start, isPending] = set()  # for a function that calls itself
        found, seen, waiting = set(), set(), [(start, isPending)]
        while waiting:
            n, pending = state = waiting.pop()
            if state in seen:
                continue
            seen.add(state)
            name = self.name(n)
            pending = (pending or STREAMING_STORE.fullmatch(name) is not None) and name != "sfence"
            following, called = self._calledFrom(n)
            after = {p for m in called for p in self._pendingAtEnd(m, pending)} if called else {pending}
            if following:
                waiting += [(m, p) for m in following for p in after]
            else:
                found |= after
        self.ends[start, isPending] = found
        return found


def _waits(stores, start, entry, fences):
    if CHOOSING_IN_TWO_LOOPS.fullmatch(entry):
        return fences
    if CHOOSING_IN_A_LOOP.fullmatch(entry):
        return stores.mayWait(start)
    return stores.waits(start)


def streaming(code, entries):
    """Complaints about the routines of these entries."""
    stores = Stores(code)
    expected = {(variant, entry) for variant in VARIANTS for entry in entries if isExpected(entry, variant)}
    complaints = [f"no entry is named {form}" for form, *_ in STREAMING
                  if not any(re.fullmatch(form, entry) for entry in entries)]
    complaints += [f"{entry} of {variant} is not in the library"
                   for variant, entry in sorted(expected - set(stores.routines.values()))]
    for start, (variant, entry) in sorted(stores.routines.items(), key=lambda item: item[1]):
        names = stores.names(start)
        streams, fences = any(STREAMING_STORE.fullmatch(name) for name in names), "sfence" in names
        why = []
        if streams and (variant, entry) not in expected and not MAY_SHARE.fullmatch(entry):
            why.append("has streaming stores")
        if not streams and (variant, entry) in expected:
            why.append("has no streaming stores")
        if fences and not (streams and entry != NOT_WAITING):
            why.append("has a fence")
        if streams and entry != NOT_WAITING and not _waits(stores, start, entry, fences):
            why.append("returns before its streaming stores are visible")
        complaints += [f"{entry} of {variant} {text}" for text in why]
    return complaints
