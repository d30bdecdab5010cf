"""Chromium without a window, asked through its debugging pipe."""

import json
import os
import shutil
import subprocess
import tempfile
import time

READ, WRITE = 3, 4  # the descriptors that Chromium has for it


class Browser:
    """A page at `url`."""

    def __init__(self, program, url):
        self.profile = tempfile.mkdtemp()
        to_browser, self.output = os.pipe()
        self.input, from_browser = os.pipe()
        self.received, self.count, self.session = b"", 0, None

        def give_descriptors():
            # By way of others, since one of the two may have the number of another.
            for number, descriptor in ((READ, os.dup(to_browser)), (WRITE, os.dup(from_browser))):
                os.dup2(descriptor, number + 100)
            os.dup2(READ + 100, READ)
            os.dup2(WRITE + 100, WRITE)

        # Root has no sandbox.
        self.process = subprocess.Popen(
            [program, "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--remote-debugging-pipe", f"--user-data-dir={self.profile}", "about:blank"], close_fds=False, preexec_fn=give_descriptors,
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        target = self.ask("Target.createTarget", url=url)["targetId"]
        self.session = self.ask("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        self.ask("Page.enable")
        end = time.monotonic() + 60
        while self.value("location.href + ' ' + document.readyState") != f"{url} complete":
            if time.monotonic() > end:
                raise TimeoutError(url)
            time.sleep(0.05)

    def ask(self, method, **parameters):
        self.count += 1
        message = {"id": self.count, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.output, json.dumps(message).encode() + b"\0")
        while True:
            while b"\0" not in self.received:
                more = os.read(self.input, 1 << 16)
                if not more:
                    raise EOFError("Chromium has ended")
                self.received += more
            text, self.received = self.received.split(b"\0", 1)
            answer = json.loads(text)
            if answer.get("id") == self.count:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]

    def value(self, expression):
        """What the JavaScript expression, or its promise, gives."""
        result = self.ask("Runtime.evaluate", expression=expression, awaitPromise=True, returnByValue=True)
        return result["result"].get("value")

    def close(self):
        os.close(self.output)
        self.process.terminate()
        self.process.wait(30)
        os.close(self.input)
        shutil.rmtree(self.profile, ignore_errors=True)
