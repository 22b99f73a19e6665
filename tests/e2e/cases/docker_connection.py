"""Which engine the program talks to, and that it stays with it."""

import json
import os
import re
from hashlib import sha256

import homes
from harness.docker_case import DockerCase, no_daemon
from harness.docker_engine import HOST

NOWHERE = "unix:///run/nowhere/docker.sock"
# A client that knows `context show`, which Debian's does not.
RECENT_CLIENT = "/usr/local/bin/docker"
_UNRESOLVED = re.compile(r"^Docker is installed, but its daemon is unavailable: Docker CLI is installed, but its "
                         r"active context could not be resolved\. \S")


class ConnectionCase(DockerCase):
    def setUp(self):
        super().setUp()
        self.image = self.engine.make_image("service:1")

    def make_context(self, name, host):
        """What `docker context create` leaves."""
        folder = self.home / ".docker/contexts/meta" / sha256(name.encode()).hexdigest()
        homes.write(folder / "meta.json", json.dumps({"Name": name, "Metadata": {},
                                                      "Endpoints": {"docker": {"Host": host}}}))

    def activate(self, name):
        homes.write(self.home / ".docker/config.json", json.dumps({"currentContext": name}))

    def remove_image(self, connection):
        """Through the window, with a look at the connection that it names and at the engine."""
        self.assertIn(f"MB) from Docker connection '{connection}'? Docker will",
                      self.request_image_removal("service:1"))
        self.confirm("Remove Image")
        self.assert_result("Docker Image Removed", f"Removed Docker image {self.image}.", outcome="COMPLETE")
        self.assertEqual(self.engine.images(), set())


class ConnectionByHost(ConnectionCase):
    """DOCKER_HOST goes before the active context; an empty DOCKER_CONTEXT counts as none."""

    def test_host(self):
        self.make_context("elsewhere", NOWHERE)
        self.activate("elsewhere")
        self.start_over_engine(DOCKER_HOST=HOST, DOCKER_CONTEXT="")
        self.remove_image("DOCKER_HOST override")
        self.close()

    def test_host_that_does_not_answer(self):
        self.start_over_engine(DOCKER_HOST=NOWHERE)
        self.screen.wait(**no_daemon("DOCKER_HOST override", NOWHERE))
        self.assertIsNone(self.screen.find("list item", "service:1"))
        self.display.picture("docker-unavailable")
        self.close()


class ConnectionByContext(ConnectionCase):
    """DOCKER_CONTEXT goes before DOCKER_HOST and before the active context."""

    def test_context(self):
        self.make_context("workshop", HOST)
        self.make_context("elsewhere", NOWHERE)
        self.activate("elsewhere")
        self.start_over_engine(DOCKER_HOST=NOWHERE, DOCKER_CONTEXT="workshop")
        self.remove_image("workshop")
        self.close()


class ConnectionByActiveContext(ConnectionCase):
    """Without either variable it is the context that the tool is set to, and a removal stays with the one that listed
    the image. A tool that cannot tell its context leaves the connection unresolved."""

    def test_removal_stays_with_it(self):
        if not os.access(RECENT_CLIENT, os.X_OK):
            self.assert_unresolved()
            return
        self.cage.bind(RECENT_CLIENT, RECENT_CLIENT)
        self.make_context("workshop", HOST)
        self.make_context("elsewhere", NOWHERE)
        self.activate("workshop")
        self.start_over_engine(DOCKER_HOST=None)
        self.activate("elsewhere")
        # The scan that follows asks anew.
        self.remove_image("workshop")
        self.screen.wait(**no_daemon("elsewhere", NOWHERE))
        self.close()

    def test_tool_that_cannot_tell(self):
        self.assert_unresolved()

    def assert_unresolved(self):
        self.start_over_engine(DOCKER_HOST=None)
        # Then the tool's own words follow, which differ from version to version.
        self.screen.wait(name="Docker Daemon Unavailable", description=_UNRESOLVED)
        self.assertIsNone(self.screen.find("list item", "service:1"))
        self.close()
