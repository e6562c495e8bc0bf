"""Lifetimes, reference counts, threads, interrupts."""

import concurrent.futures
import gc
import signal
import subprocess
import sys
import textwrap
import threading
import time
import weakref

import numpy as np
import pytest

import zorvan_ipp as zi


def pixels(rows=64, columns=64, dtype=np.uint8):
    return np.random.default_rng(2).integers(0, 256, (rows, columns)).astype(dtype)


CALLS = {
    "copy": lambda a, b, m: zi.copy(a, b, mask=m),
    "fill": lambda a, b, m: zi.fill(b, 3, mask=m, region=(1, 1, 5, 5)),
    "add": lambda a, b, m: zi.add(a, a, out=b),
    "new": lambda a, b, m: zi.add(a, a),
    "add_constant": lambda a, b, m: zi.add_constant(b, 3, mask=m),
    "erode": lambda a, b, m: zi.erode(a, size=(3, 5), out=b),
    "laplace": lambda a, b, m: zi.laplace(a, 5, "constant", 7, out=b),
    "mean": lambda a, b, m: zi.mean(a, mask=m),
    "mean_std_dev": lambda a, b, m: zi.mean_std_dev(a, m),
    "min_max_index": lambda a, b, m: zi.min_max_index(a, m),
    "flood_fill": lambda a, b, m: zi.flood_fill(b, (3, 3), 9),
    "copied": lambda a, b, m: zi.invert(a[::-1], out=b[::-1], copy=True),
    "region error": lambda a, b, m: zi.erode(a, region=(0, 0, 99, 99)),
    "type error": lambda a, b, m: zi.erode(a.astype(np.int64)),
    "strides error": lambda a, b, m: zi.erode(a[::-1]),
    "overlap error": lambda a, b, m: zi.erode(a, out=a),
    "status error": lambda a, b, m: zi.absolute(a),
    "keyword error": lambda a, b, m: zi.erode(a, form=3),
}


@pytest.mark.parametrize("name", CALLS)
def test_calls_leave_no_references(name):
    call = CALLS[name]
    a, b, m = pixels(), pixels(), pixels() > 50

    def repeat(times):
        for _ in range(times):
            try:
                call(a, b, m)
            except (TypeError, ValueError):
                pass
        gc.collect()

    repeat(10)
    counts = [sys.getrefcount(thing) for thing in (a, b, m, None, type(a), np.dtype(np.uint8))]
    blocks = sys.getallocatedblocks()
    repeat(1000)
    after = [sys.getrefcount(thing) for thing in (a, b, m, None, type(a), np.dtype(np.uint8))]
    assert all(abs(x - y) < 100 for x, y in zip(counts, after)), (counts, after)
    assert abs(sys.getallocatedblocks() - blocks) < 500
    assert counts[:3] == after[:3]


def test_results_outlive_their_sources():
    image = zi.empty((100, 100), np.float32)
    image[...] = 5
    part = image[10:20]
    gone = weakref.ref(image)
    del image
    gc.collect()
    assert gone() is not None  # the view keeps it alive
    assert (part == 5).all()
    del part
    gc.collect()
    assert gone() is None


def test_memory_of_new_images_is_given_back():
    def peak():
        with open("/proc/self/statm") as statm:
            return int(statm.read().split()[1]) * 4096

    for _ in range(3):
        zi.empty((1000, 1000), np.float32)[...] = 1
    before = peak()
    for _ in range(100):
        zi.empty((1000, 1000), np.float32)[...] = 1
    assert peak() - before < 40e6  # all of them together are 400 MB


def test_the_lock_is_released():
    """While one thread is inside a call, another runs Python."""
    big = np.zeros((3000, 3000), np.uint8)
    done = threading.Event()

    def work():
        zi.close(big, (41, 41))
        done.set()

    meanwhile = 0
    switch = sys.getswitchinterval()
    sys.setswitchinterval(100)  # threads switch only where the lock is released
    try:
        thread = threading.Thread(target=work)
        thread.start()
        while not done.is_set():
            meanwhile += 1
            time.sleep(0)
        thread.join()
    finally:
        sys.setswitchinterval(switch)
    assert meanwhile > 1


def test_bands_of_one_image():
    src, expected = pixels(1000, 500), np.empty((1000, 500), np.uint8)
    zi.invert(src, out=expected)
    out = np.empty_like(src)
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        for _ in range(20):
            out[...] = 0
            list(pool.map(lambda row: zi.invert(src, out=out, region=(row, 0, 50, 500)), range(0, 1000, 50)))
            np.testing.assert_array_equal(out, expected)


def test_different_functions_at_once():
    src, mask = pixels(300, 300), pixels(300, 300) > 100
    jobs = [
        lambda: zi.erode(src).sum(),
        lambda: zi.mean_std_dev(src, mask),
        lambda: zi.laplace(src, 5).sum(),
        lambda: zi.flood_fill(src.copy(), (5, 5), 1),
        lambda: zi.min_max_index(src, mask),
    ]
    expected = [job() for job in jobs]
    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        for _ in range(20):
            assert [future.result() for future in [pool.submit(job) for job in jobs]] == expected


def test_interrupt():
    """Control-C ends a loop between two calls, and the array is completely written."""
    program = textwrap.dedent(
        """
        import signal
        import numpy as np, zorvan_ipp as zi
        # Processes that a shell starts in the background ignore the signal.
        signal.signal(signal.SIGINT, signal.default_int_handler)
        src, out = np.zeros((500, 500), np.uint8), np.zeros((500, 500), np.uint8)
        print("ready", flush=True)
        try:
            while True:
                zi.invert(src, out=out)
        except KeyboardInterrupt:
            assert out.min() == 255
            print("interrupted", flush=True)
        """
    )
    process = subprocess.Popen([sys.executable, "-c", program], stdout=subprocess.PIPE, text=True)
    assert process.stdout.readline() == "ready\n"
    time.sleep(0.1)
    process.send_signal(signal.SIGINT)
    assert process.communicate(timeout=60)[0] == "interrupted\n"
    assert process.returncode == 0
