"""A version endpoint on the loopback, one path for each way of answering. Prints its port, then serves until its
standard input is closed.

  version_server.py
"""
import http.server
import json
import os
import sys
import threading
import time

DOCUMENT = json.dumps({"version": "1.2.0", "build": 12}).encode()


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *arguments):
        pass

    def body(self, status, content, kind="application/json", length=None):
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(content) if length is None else length))
        self.send_header("Cache-Control", "max-age=86400")
        self.end_headers()
        self.wfile.write(content)

    def redirect(self, target):
        self.send_response(302)
        self.send_header("Location", target)
        self.send_header("Content-Length", "0")
        self.end_headers()

    def do_GET(self):
        kind, _, rest = self.path[1:].partition("/")
        if kind == "good":
            self.body(200, DOCUMENT)
        elif kind == "status":
            self.body(int(rest), DOCUMENT)
        elif kind == "html":
            self.body(200, b"<!DOCTYPE html><html><body>Please log in</body></html>", "text/html")
        elif kind == "padded":
            # A document of exactly so many bytes: blanks may follow the object.
            self.body(200, DOCUMENT + b" " * (int(rest) - len(DOCUMENT)))
        elif kind == "endless":
            self.send_response(200)
            self.send_header("Connection", "close")
            self.end_headers()
            for _ in range(100000):
                self.wfile.write(b" " * 4096)
        elif kind == "drip":
            self.send_response(200)
            self.send_header("Content-Length", str(len(DOCUMENT) + 1000))
            self.end_headers()
            for _ in range(200):
                self.wfile.write(b" ")
                self.wfile.flush()
                time.sleep(0.25)
        elif kind == "cut":
            self.body(200, DOCUMENT[:10], length=len(DOCUMENT))
            self.close_connection = True
        elif kind == "garbage":
            self.wfile.write(b"\x00\x01\x02 this is not HTTP\r\n\r\n")
            self.close_connection = True
        elif kind == "close":
            self.close_connection = True
        elif kind == "away":
            self.redirect("http://updates.pintle.invalid/good")
        elif kind == "moved":
            self.redirect("/good")
        elif kind == "circle":
            self.redirect("/circle")
        elif kind == "agent":
            self.body(200, json.dumps({"version": self.headers["User-Agent"], "build": 12}).encode())
        elif kind == "count":
            Handler.asked = getattr(Handler, "asked", 0) + 1
            self.body(200, json.dumps({"version": "x", "build": 100 + Handler.asked}).encode())
        else:
            self.body(404, b"")


def main():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    server.handle_error = lambda *arguments: None
    threading.Thread(target=server.serve_forever, daemon=True).start()
    print(server.server_port, flush=True)
    sys.stdin.read()
    os._exit(0)


if __name__ == "__main__":
    main()
