"""Which engine the program talks to, and that it stays with it."""

import json
import os
import re
import shutil
import subprocess
from hashlib import sha256

import homes
from harness.docker_case import DockerCase, no_daemon
from harness.docker_engine import CLIENT, HOST

NOWHERE = "unix:///run/nowhere/docker.sock"
# A client that knows `context show`, which Debian's does not.
RECENT_CLIENT = "/usr/local/bin/docker"
_UNRESOLVED = re.compile(r"^Docker is installed, but its daemon is unavailable: Docker CLI is installed, but its "
                         r"active context could not be resolved\. \S.*\"workshop\" is not found")


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


class ConnectionByContext(ConnectionCase):
    """DOCKER_CONTEXT goes before DOCKER_HOST and before the active context."""

    def test_context(self):
        self.make_context("workshop", HOST)
        self.make_context("elsewhere", NOWHERE)
        self.activate("elsewhere")
        self.start_over_engine(DOCKER_HOST=NOWHERE, DOCKER_CONTEXT="workshop")
        self.remove_image("workshop")
        self.close()


class ActiveContextCase(ConnectionCase):
    """Contexts that Debian's own tool made, and neither variable."""

    def setUp(self):
        super().setUp()
        self.tell_tool("create", "workshop", "--docker", f"host={HOST}")
        self.tell_tool("create", "elsewhere", "--docker", f"host={NOWHERE}")
        self.tell_tool("use", "workshop")

    def tell_tool(self, *arguments):
        """`docker context …` by the person."""
        subprocess.run([CLIENT, "context", *arguments], check=True, timeout=60, capture_output=True,
                       env={"PATH": "/usr/bin:/bin", "HOME": str(self.home)})

    def start_without_variables(self):
        self.start_over_engine(DOCKER_HOST=None, DOCKER_CONTEXT=None)

    def assert_removal_stays(self):
        self.start_without_variables()
        self.tell_tool("use", "elsewhere")
        # The scan that follows asks anew.
        self.remove_image("workshop")
        self.screen.wait(**no_daemon("elsewhere", NOWHERE))
        self.close()


class ConnectionByActiveContext(ActiveContextCase):
    """Without either variable it is the context that the tool is set to, and a removal stays with the one that listed
    the image. Debian's tool has to be asked in another way than a recent one."""

    def test_removal_stays_with_it(self):
        self.assert_removal_stays()

    def test_context_that_is_gone(self):
        shutil.rmtree(self.home / ".docker/contexts")
        self.start_without_variables()
        # The tool's own words follow.
        self.screen.wait(name="Docker Daemon Unavailable", description=_UNRESOLVED)
        self.assertIsNone(self.screen.find("list item", "service:1"))
        self.close()


class ConnectionByActiveContextOfARecentTool(ActiveContextCase):
    """The same with a tool that shows its context."""

    def test_removal_stays_with_it(self):
        if not os.access(RECENT_CLIENT, os.X_OK):
            self.skipTest(f"there is no second client at {RECENT_CLIENT}")
        self.cage.bind(RECENT_CLIENT, RECENT_CLIENT)
        self.assert_removal_stays()


class ConnectionByDefault(DockerCase):
    """A person who never made a context: the tool's own default, at the system's place for the engine's socket."""

    def test_everything_as_installed(self):
        image = self.engine.make_image("service:1")
        self.cage.bind(self.engine.socket_folder / "docker.sock", "/run/docker.sock")
        self.start_over_engine(DOCKER_HOST=None, DOCKER_CONTEXT=None)
        self.assertIn("MB) from Docker connection 'default'? Docker will", self.request_image_removal("service:1"))
        self.confirm("Remove Image")
        self.assert_result("Docker Image Removed", f"Removed Docker image {image}.", outcome="COMPLETE")
        self.assertEqual(self.engine.images(), set())
        self.close()
