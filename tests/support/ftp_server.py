#!/usr/bin/python3
"""A site's FTP server on loopback for the tests: one user whose home is ROOT.

   ftp_server.py ROOT USER PASSWORD [slow|trickle]

Prints "ready PORT" once it listens on a free port of 127.0.0.1. "slow"
sends about 20 kB a second, so that a test can stop the server mid-transfer.
A file whose name begins with "trickle" goes out at 2 bytes a second, a
transfer that doesn't end in any test's time. Names go out as the file
system holds them, bytes that aren't UTF-8 included, as a server on a CP949
system sends them.
"""
import logging
import os
import sys
import time

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.filesystems import AbstractedFS
from pyftpdlib.handlers import FTPHandler, ThrottledDTPHandler
from pyftpdlib.log import config_logging
from pyftpdlib.servers import FTPServer


class Trickle:
    """A file read 2 bytes a second (the server waits meanwhile)."""

    def __init__(self, f):
        self._f = f

    def read(self, n):
        time.sleep(1)
        return self._f.read(2)

    def __getattr__(self, name):
        return getattr(self._f, name)


class FS(AbstractedFS):
    def open(self, filename, mode):
        f = super().open(filename, mode)
        return Trickle(f) if os.path.basename(filename).startswith("trickle") else f


class Handler(FTPHandler):
    unicode_errors = "surrogateescape"
    abstracted_fs = FS
    use_sendfile = False  # every byte through read()


def main():
    root, user, password = sys.argv[1:4]
    authorizer = DummyAuthorizer()
    authorizer.add_user(user, password, root, perm="elradfmw")
    Handler.authorizer = authorizer
    if len(sys.argv) > 4 and sys.argv[4] == "slow":
        dtp = ThrottledDTPHandler
        dtp.write_limit = 20000
        Handler.dtp_handler = dtp
    # Warnings only: pyftpdlib logs every command to stderr, which nobody
    # reads; once the pipe is full the server blocks mid-session.
    config_logging(level=logging.WARNING)
    server = FTPServer(("127.0.0.1", 0), Handler)
    print("ready", server.address[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    main()
