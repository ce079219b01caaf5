#!/usr/bin/python3
"""Times Pearson hierarchical clustering by vorn_learn against centroid linkage in scipy and fastcluster.

Usage: /usr/bin/python3 clustering_compare.py VORN_LEARN [ROWS ...]   (default rows: 5000 20000; 100 columns)

Each method runs in its own process on the same planted matrix; the report gives CPU seconds and peak
resident memory of each, and the ratios to vorn_learn. scipy and fastcluster see the rows z-scored,
so that their Euclidean centroid linkage orders merges as centred Pearson does. Not run in CI.
"""
import os
import resource
import subprocess
import sys
import tempfile
import time

COLUMNS = 100


def planted(rows, path):
    import numpy as np
    rng = np.random.default_rng(17)
    centres = 2.0 * rng.standard_normal((20, COLUMNS))
    matrix = centres[np.arange(rows) % 20] + rng.standard_normal((rows, COLUMNS))
    with open(path, "w") as out:
        out.write("Gene\t" + "\t".join("E%d" % c for c in range(COLUMNS)) + "\n")
        for r in range(rows):
            out.write("G%d\t" % r + "\t".join("%.6f" % v for v in matrix[r]) + "\n")


def run_library(method, path):
    import numpy as np
    matrix = np.loadtxt(path, skiprows=1, usecols=range(1, COLUMNS + 1))
    start = time.process_time()
    z = matrix - matrix.mean(axis=1, keepdims=True)
    z /= np.linalg.norm(z, axis=1, keepdims=True)
    if method == "scipy":
        from scipy.cluster.hierarchy import linkage
    else:
        from fastcluster import linkage
    linkage(z, method="centroid")
    print(time.process_time() - start)


def measure(command):
    """CPU seconds reported by the command (or its own CPU time) and its peak memory in MB."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    result = subprocess.run(command, capture_output=True, text=True, check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    cpu = (after.ru_utime - before.ru_utime) + (after.ru_stime - before.ru_stime)
    reported = result.stdout.strip()
    return (float(reported) if reported else cpu), after.ru_maxrss / 1024.0


def main():
    if len(sys.argv) >= 3 and sys.argv[1] == "--library":
        run_library(sys.argv[2], sys.argv[3])
        return
    vorn = os.path.abspath(sys.argv[1])
    sizes = [int(a) for a in sys.argv[2:]] or [5000, 20000]
    with tempfile.TemporaryDirectory() as work:
        for rows in sizes:
            data = os.path.join(work, "matrix_%d.txt" % rows)
            planted(rows, data)
            pipeline = os.path.join(work, "cluster_%d.xml" % rows)
            with open(pipeline, "w") as out:
                out.write('<?xml version="1.0"?>\n<Pipeline><RunVec><Run Name="bench">'
                          '<Step Type="LoadMicroarray" Name="load" MicroarrayName="m" File="%s"/>'
                          '<Step Type="Cluster" Name="tree" MicroarrayName="m" Method="Hierarchical" Metric="Pearson"'
                          ' OutputFormat="TreeView" OutputFile="%s"/>'
                          '</Run></RunVec></Pipeline>\n' % (data, os.path.join(work, "tree_%d" % rows)))
            # vorn_learn's time includes reading the file and writing the tree files.
            results = {"vorn_learn": measure(["sh", "-c", '"$0" "$1" 2>/dev/null', vorn, pipeline])}
            for method in ("scipy", "fastcluster"):
                results[method] = measure([sys.executable, __file__, "--library", method, data])
            base = results["vorn_learn"][0]
            for name, (cpu, peak) in results.items():
                print("rows=%d %-11s cpu=%8.2f s  peak<=%8.1f MB  time/vorn_learn=%.2f" % (rows, name, cpu, peak, cpu / base))
            sys.stdout.flush()


if __name__ == "__main__":
    main()
