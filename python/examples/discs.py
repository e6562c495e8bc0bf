#!/usr/bin/env python3
"""Counts and measures the discs of a picture that is larger than the memory of each worker.

    discs.py [--size 20000] [--tile 2000] [--limit MB] [--kill]

The workers of a local cluster, two processes with limited memory, draw the picture into tiles on disk. They count and
measure the discs, also those that extend over several tiles. With --kill the first worker is killed during the work.
Then one process does the same on a part that fits into its memory, and the results are compared.
"""

import argparse
import os
import resource
import signal
import tempfile
import time

# Workers log in detail that one of them was lost; here that is intended.
os.environ["DASK_LOGGING__DISTRIBUTED"] = "critical"
os.environ["DASK_DISTRIBUTED__COMM__TIMEOUTS__CONNECT"] = "3s"

import dask
import dask.array
import numpy as np
from distributed import Client, LocalCluster

import zorvan_ipp as zi
from zorvan_ipp import chunked

CELL = 250  # side of the squares; each has one disc, which does not touch the edges


def disc_of(row, column):
    """Row, column and radius of the disc in a cell, always the same."""
    random = np.random.default_rng((row, column))
    radius = random.integers(12, 100)
    middle = random.integers(radius + 5, CELL - radius - 5, 2)
    return row * CELL + middle[0], column * CELL + middle[1], radius


def draw(block_info=None):
    """One tile: discs on a darker background, noise, and bright specks that are not discs."""
    (top, bottom), (left, right) = block_info[None]["array-location"]
    random = np.random.default_rng((top, left))
    tile = random.integers(20, 80, (bottom - top, right - left), dtype=np.uint8)
    for row in range(top // CELL, (bottom - 1) // CELL + 1):
        for column in range(left // CELL, (right - 1) // CELL + 1):
            y, x, radius = disc_of(row, column)
            rows = np.arange(max(top, y - radius), min(bottom, y + radius + 1))
            columns = np.arange(max(left, x - radius), min(right, x + radius + 1))
            inside = (rows[:, None] - y) ** 2 + (columns - x) ** 2 <= radius**2
            tile[np.ix_(rows - top, columns - left)] += np.where(inside, 110, 0).astype(np.uint8)
    specks = random.integers(0, tile.shape, (tile.size // 5000, 2))
    tile[specks[:, 0], specks[:, 1]] = 255
    return tile


def count(picture):
    """The discs, as a lazy result: an opening removes the specks, then each bright area is a disc."""
    return chunked.objects(chunked.open(picture, (5, 5)) > 105, picture)


def peak():
    """The peak memory of this process, in MB."""
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss // 1024


def kill_one(client, future):
    """Kills a worker after the first chunks and long before the last one."""
    while not any(client.has_what().values()):
        time.sleep(0.01)
    assert not future.done()
    victim = min(client.run(os.getpid).values())
    os.kill(victim, signal.SIGKILL)
    print(f"killed worker {victim}")


def draw_and_count(options, size, folder):
    """Draws the picture into `folder` and finds its discs, on a cluster."""
    with LocalCluster(
        n_workers=2, threads_per_worker=1, memory_limit=f"{options.limit}MB", dashboard_address=None
    ) as cluster, Client(cluster) as client:
        start = time.monotonic()
        chunks = dask.array.core.normalize_chunks(options.tile, (size, size))
        dask.array.map_blocks(draw, chunks=chunks, dtype=np.uint8).to_zarr(folder)
        tiles = f"tiles of {options.tile}x{options.tile}"
        print(f"drawn: {size}x{size} pixels in {tiles}, {time.monotonic() - start:.1f} s")

        start = time.monotonic()
        # Inline: the array's handle would be a task of its own, which others wait for forever if its worker is killed.
        future = client.compute(count(dask.array.from_zarr(folder, inline_array=True)))
        if options.kill:
            kill_one(client, future)
        found = future.result()
        print(f"found: {len(found)} discs, {time.monotonic() - start:.1f} s")

        peaks = client.run(peak).values()
        print(f"memory of the workers at most: {', '.join(f'{mb} MB' for mb in peaks)} of {options.limit} MB")
        assert max(peaks) <= options.limit, "more memory than a worker may have"
    return found


def count_alone(side, folder):
    """The discs of the upper left part of the picture, as one chunk, without a cluster."""
    part = dask.array.from_zarr(folder)[:side, :side].compute(scheduler="synchronous")
    return count(dask.array.from_array(part, part.shape)).compute(scheduler="synchronous")


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument("--size", type=int, default=20000)
    options.add_argument("--tile", type=int, default=2000)
    options.add_argument("--limit", type=int, default=300, metavar="MB", help="memory of a worker")
    options.add_argument("--kill", action="store_true", help="kill a worker while they count")
    options = options.parse_args()
    size = options.size // CELL * CELL

    with tempfile.TemporaryDirectory() as folder:
        found = draw_and_count(options, size, folder)
        assert len(found) == (size // CELL) ** 2, "not the discs that were drawn"

        side = min(size, 4 * options.tile) // CELL * CELL
        same = [disc for disc in found if disc.region[0] < side and disc.region[1] < side]
        assert count_alone(side, folder) == same, "not what one process measures"
        print(f"one process, alone on {side}x{side}: the same {len(same)} discs, to the last digit")
    largest = max(found, key=lambda disc: disc.area)
    print(f"the largest: {largest.area} pixels, mean {largest.mean:.3f}, deviation {largest.std_dev:.3f}")


if __name__ == "__main__":
    main()
