"""A process of the private desktop: its own process group, its output read as it comes."""

import os
import signal
import subprocess
import threading

from waiting import PATIENCE_SECONDS, wait_until


class Child:
    """Runs until `stop`, which ends the whole process group. Output lines gather in `lines`."""

    def __init__(self, command, environment, pass_fds=()):
        self.command = [str(part) for part in command]
        self.lines = []
        self.errors = []
        self._process = subprocess.Popen(
            self.command,
            env=environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            pass_fds=pass_fds,
            start_new_session=True,
        )
        self._readers = [
            self._reader(self._process.stdout, self.lines),
            self._reader(self._process.stderr, self.errors),
        ]

    @staticmethod
    def _reader(stream, lines):
        def read():
            with stream:
                for line in stream:
                    lines.append(line.decode("utf-8", "backslashreplace").rstrip("\n"))

        thread = threading.Thread(target=read, daemon=True)
        thread.start()
        return thread

    @property
    def pid(self):
        return self._process.pid

    @property
    def name(self):
        return os.path.basename(self.command[0])

    def is_running(self):
        return self._process.poll() is None

    def send_signal(self, number):
        self._process.send_signal(number)

    def wait_for_exit(self, seconds=PATIENCE_SECONDS):
        """The exit status; all output has been read by then."""
        wait_until(lambda: not self.is_running(), f"{self.name} ends", seconds)
        for reader in self._readers:
            reader.join(timeout=5)
        return self._process.returncode

    def wait_for_line(self, line, seconds=PATIENCE_SECONDS):
        wait_until(lambda: line in self.lines, f"{self.name} prints {line!r}; it printed {self.lines}", seconds)

    def stop(self):
        """Asks the group to end, and makes it end after 10 seconds."""
        self._signal_group(signal.SIGTERM)
        try:
            self._process.wait(timeout=10)
        except subprocess.TimeoutExpired:
            pass
        self._signal_group(signal.SIGKILL)
        self._process.wait()
        for reader in self._readers:
            reader.join(timeout=5)

    def _signal_group(self, number):
        try:
            os.killpg(self.pid, number)
        except ProcessLookupError:
            pass
