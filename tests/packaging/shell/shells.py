"""Shells that are asked, as a person asks them with the Tab key, what may follow on a command line."""

import os
import pathlib
import pty
import select
import shlex
import shutil
import subprocess
import time


class Shell:
    """A shell in the folder `work`, which finds the program in the folder `bin` and completions below `share`. `home` is
    a folder for the shell's own files."""

    name = None

    def __init__(self, bin, share, work, home):
        self.work = work
        self.home = pathlib.Path(home)
        self.environment = {
            "PATH": f"{bin}:{os.environ['PATH']}",
            "HOME": str(home),
            "TERM": "dumb",
            "LC_ALL": "C.UTF-8",
            "XDG_DATA_DIRS": f"{share}:/usr/local/share:/usr/share",
        }

    def candidates(self, fixed, partial=""):
        """The words that may stand at the end of the line, where `fixed` stays and `partial` has been typed."""
        raise NotImplementedError

    def end(self):
        pass


class Terminal(Shell):
    """A shell on a terminal. It answers a line and two keys with the file `answer`."""

    def start(self, *command):
        self.answer = self.home / "answer"
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(self.work)
            os.execvpe(command[0], command, self.environment)
        self.wait_for(self.home / "ready")

    def wait_for(self, file):
        """Until the shell has made `file`, whose content is returned. What it prints meanwhile is left aside."""
        printed = b""
        end = time.monotonic() + 60
        while not file.exists():
            if select.select([self.terminal], [], [], 0.01)[0]:
                printed += os.read(self.terminal, 65536)
            if time.monotonic() > end:
                raise TimeoutError(f"{self.name} made no {file.name}; it printed {printed!r}")
        content = file.read_text(encoding="utf-8")
        file.unlink()
        return content

    def asked(self, line, keys):
        os.write(self.terminal, b"\x15" + line.encode() + keys)
        return self.wait_for(self.answer)

    def end(self):
        os.close(self.terminal)
        os.waitpid(self.process, 0)


class Bash(Terminal):
    """Its readline inserts all candidates into the line, and the line is read back."""

    name = "bash"

    def __init__(self, bin, share, work, home):
        super().__init__(bin, share, work, home)
        (self.home / ".inputrc").write_text('"\\C-xi": insert-completions\nset bell-style none\n', encoding="utf-8")
        (self.home / ".bashrc").write_text(
            f"""
PS1=
. {shlex.quote(str(bash_completion()))}
answer() {{ printf '%s' "$READLINE_LINE" >$HOME/new; mv $HOME/new $HOME/answer; }}
bind -x '"\\C-xa": answer'
PROMPT_COMMAND='PROMPT_COMMAND=; touch $HOME/ready'
""", encoding="utf-8")
        self.start("bash", "-i")

    def candidates(self, fixed, partial=""):
        line = self.asked(fixed + partial, b"\x18i\x18a")
        if line == fixed + partial:
            return []
        if not line.startswith(fixed):
            raise ValueError(f"{fixed}{partial} became {line}")
        return shlex.split(line[len(fixed):])


class Zsh(Terminal):
    """Its builtin that takes candidates is wrapped in a function that notes them."""

    name = "zsh"

    def __init__(self, bin, share, work, home):
        super().__init__(bin, share, work, home)
        (self.home / ".zshrc").write_text(
            f"""
PS1=
fpath=({shlex.quote(str(share))}/zsh/(vendor-completions|site-functions)(N) $fpath)
autoload -Uz compinit
compinit -u
compadd() {{
    # With these options it fills arrays for its caller.
    if [[ -z ${{(M)@:#-[OAD]}} ]]; then
        local -a matching
        builtin compadd -A matching "$@"
        print -rl -- $matching >>$HOME/new
    fi
    builtin compadd "$@"
}}
answer() {{ : >$HOME/new; zle list-choices; mv $HOME/new $HOME/answer }}
zle -N answer
bindkey '^Xa' answer
precmd() {{ precmd() {{ }}; touch $HOME/ready }}
""", encoding="utf-8")
        self.start("zsh", "-i")

    def candidates(self, fixed, partial=""):
        # A candidate may be offered more than once.
        return sorted(set(shlex.split(self.asked(fixed + partial, b"\x18a"))))


class Fish(Shell):
    name = "fish"

    def candidates(self, fixed, partial=""):
        line = fixed + partial
        printed = subprocess.run(["fish", "--private", "--command", f"complete --do-complete {shlex.quote(line)}"],
                                 cwd=self.work, env=self.environment, capture_output=True, text=True, check=True)
        if printed.stderr:
            raise ValueError(printed.stderr)
        # "--option=word" is one word to it.
        last = fixed[fixed.rindex(" ") + 1:]
        return [words.split("\t")[0].removeprefix(last) for words in printed.stdout.splitlines()]


def bash_completion():
    """The file that bash-completion starts with, or None. It needs bash 4.2."""
    version = subprocess.run(["bash", "-c", "echo ${BASH_VERSINFO[0]} ${BASH_VERSINFO[1]}"], capture_output=True, check=True)
    if tuple(map(int, version.stdout.split())) < (4, 2):
        return None
    for prefix in ("/usr", "/usr/local", "/opt/homebrew"):
        file = pathlib.Path(prefix, "share/bash-completion/bash_completion")
        if file.exists():
            return file
    return None


def is_installed(shell):
    return bool(shutil.which(shell.name)) and (shell is not Bash or bash_completion() is not None)


SHELLS = {shell.name: shell for shell in (Bash, Zsh, Fish)}
