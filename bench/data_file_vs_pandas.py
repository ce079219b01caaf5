#!/usr/bin/python3
# Times the load of the benchmark's expression table by bench_data_file and by pandas.read_csv
# (python3-pandas from Debian) in one run, and prints the ratio. Not part of CI.
#   bench/data_file_vs_pandas.py build/release/bench/bench_data_file
import json
import resource
import subprocess
import sys
import time

import pandas

GENES, EXPERIMENTS = 20000, 1000
TABLE = "/tmp/vorn_bench_%dx%d.tab" % (GENES, EXPERIMENTS)


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: data_file_vs_pandas.py <bench_data_file>")
    # The C++ benchmark makes the table when it is missing, so it runs first.
    run = subprocess.run([sys.argv[1], "--benchmark_format=json"], check=True, capture_output=True, text=True)
    ours = {b["name"].split("/")[0]: b for b in json.loads(run.stdout)["benchmarks"]}
    times = []
    for _ in range(3):
        start_wall, start_cpu = time.perf_counter(), time.process_time()
        frame = pandas.read_csv(TABLE, sep="\t", index_col=0)
        times.append((time.perf_counter() - start_wall, time.process_time() - start_cpu))
        assert frame.shape == (GENES, EXPERIMENTS)
        del frame
    wall = min(t[0] for t in times) * 1000
    cpu = min(t[1] for t in times) * 1000
    peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss * 1024 / (8.0 * GENES * EXPERIMENTS)
    print("pandas.read_csv             %8.0f ms wall %8.0f ms cpu  peak rss / matrix %.2f" % (wall, cpu, peak))
    for name in ("BM_DataFileLoad", "BM_MicroarrayLoad"):
        b = ours[name]
        print("%-27s %8.0f ms wall %8.0f ms cpu  peak rss / matrix %.2f   pandas / ours (cpu) %.2f"
              % (name, b["real_time"], b["cpu_time"], b["peak_rss_over_matrix"], cpu / b["cpu_time"]))


if __name__ == "__main__":
    main()
