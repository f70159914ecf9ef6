#!/usr/bin/python3
"""A site's FTP server on loopback for the tests: one user whose home is ROOT.

   ftp_server.py ROOT USER PASSWORD [slow]

Prints "ready PORT" once it listens on a free port of 127.0.0.1. "slow"
sends about 20 kB a second, so that a test can stop the server mid-transfer.
"""
import logging
import sys

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler, ThrottledDTPHandler
from pyftpdlib.log import config_logging
from pyftpdlib.servers import FTPServer


class Handler(FTPHandler):
    pass


def main():
    root, user, password = sys.argv[1:4]
    authorizer = DummyAuthorizer()
    authorizer.add_user(user, password, root, perm="elradfmw")
    Handler.authorizer = authorizer
    if len(sys.argv) > 4 and sys.argv[4] == "slow":
        dtp = ThrottledDTPHandler
        dtp.read_limit = 20000
        Handler.dtp_handler = dtp
    # Warnings only: pyftpdlib logs every command to stderr, which nobody
    # reads; once the pipe is full the server blocks mid-session.
    config_logging(level=logging.WARNING)
    server = FTPServer(("127.0.0.1", 0), Handler)
    print("ready", server.address[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    main()
