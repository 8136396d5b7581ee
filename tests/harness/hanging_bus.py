"""A way to a bus on which everything stands still from some word on."""

import os
import socket
import tempfile
import threading


class HangingBus:
    """Passes on what its clients and a bus say to each other, until a client says a word: it and all that comes
    later are kept back, while the connection stays."""

    def __init__(self, address, word):
        self._path = address.removeprefix("unix:path=")
        self._word = word.encode()
        self._sockets = []
        self._folder = tempfile.TemporaryDirectory(prefix="vigilo-hanging-bus-")
        path = os.path.join(self._folder.name, "bus")
        self.address = "unix:path=" + path
        self.hangs = threading.Event()
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(path)
        self._listener.listen()

    def __enter__(self):
        threading.Thread(target=self._accept, daemon=True).start()
        return self

    def __exit__(self, *_):
        for open_socket in [self._listener, *self._sockets]:
            # Closing alone wakes nobody who waits for it.
            try:
                open_socket.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
            open_socket.close()
        self._folder.cleanup()

    def _accept(self):
        while True:
            try:
                client, _ = self._listener.accept()
            except OSError:
                return
            bus = socket.socket(socket.AF_UNIX)
            bus.connect(self._path)
            self._sockets += [client, bus]
            threading.Thread(target=self._pass_on, args=(client, bus), daemon=True).start()
            threading.Thread(target=self._pass_on, args=(bus, client), daemon=True).start()

    def _pass_on(self, source, sink):
        try:
            while data := source.recv(65536):
                if self._word in data:
                    self.hangs.set()
                if not self.hangs.is_set():
                    sink.sendall(data)
            # Whoever leaves is let go of, too.
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass
