"""A cluster on this machine: a scheduler and workers, each a process of its own."""

import contextlib
import os
import pathlib
import subprocess
import sys
import time

from distributed import Client


class Cluster:
    def __init__(self, folder: pathlib.Path, workers: int) -> None:
        self._stack = contextlib.ExitStack()
        self._folder = folder
        self._file = folder / "scheduler.json"
        self._file.unlink(missing_ok=True)
        self._log = self._stack.enter_context((folder / "cluster.log").open("w"))
        try:
            self.scheduler = self._start("scheduler", "--host", "127.0.0.1", "--port", "0")
            self.workers = [self._start_worker(i) for i in range(workers)]
            self.client = self._stack.enter_context(
                Client(scheduler_file=str(self._file), timeout=60))
            self.client.wait_for_workers(workers, timeout=60)
        except BaseException:
            self._stack.close()
            raise

    def _start_worker(self, number: int) -> "subprocess.Popen[bytes]":
        return self._start("worker", "--nthreads", "1", "--no-nanny", "--memory-limit", "0",
                           "--name", str(number), "--local-directory", str(self._folder))

    def _start(self, kind: str, *options: str) -> "subprocess.Popen[bytes]":
        module = f"distributed.cli.dask_{kind}"
        process = subprocess.Popen(
            [sys.executable, "-m", module, "--scheduler-file", str(self._file), "--no-dashboard",
             *options], stdout=self._log, stderr=self._log,
            # Without the profile that Dask keeps of the last hour, which grows until then.
            env={**os.environ, "OMP_NUM_THREADS": "1", "DASK_DISTRIBUTED__WORKER__PROFILE__ENABLED": "False"})
        self._stack.callback(self._end, process)
        until = time.monotonic() + 60
        while kind == "scheduler" and not self._file.exists():
            if process.poll() is not None or time.monotonic() > until:
                raise RuntimeError((self._folder / "cluster.log").read_text())
            time.sleep(0.05)
        return process

    @staticmethod
    def _end(process: "subprocess.Popen[bytes]") -> None:
        process.kill()
        process.wait()

    def __enter__(self) -> "Cluster":
        return self

    def __exit__(self, *_: object) -> None:
        self._stack.close()
