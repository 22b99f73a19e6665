"""Docker that is not there, or no longer."""

import os
import shutil

from harness.case import Case
from harness.docker_case import TOOL_NOT_FOUND, DockerCase, no_daemon, unreachable
from harness.docker_engine import CLIENT, HOST

_UNREACHABLE = unreachable(HOST)


class EngineThatDoesNotAnswer(Case):
    """The tool alone is not enough: the pane says which connection does not answer, in the tool's own words."""

    def test_notice(self):
        if not os.access(CLIENT, os.X_OK):
            self.skipTest(f"{CLIENT} is missing (package docker.io)")
        self.cage.require_absent("docker", "Docker.app")
        (self.home / ".local/bin").mkdir(parents=True)
        shutil.copy(CLIENT, self.home / ".local/bin/docker")
        nowhere = "unix:///run/nowhere/docker.sock"
        self.start(environment={"DOCKER_HOST": nowhere})
        self.show_pane("docker")
        self.screen.wait(**no_daemon("DOCKER_HOST override", nowhere))
        self.display.picture("docker-unavailable")
        self.close()


class EngineStoppedAfterScan(DockerCase):
    """An engine that ended since the scan fails the action with the tool's own words, and the pane says so."""

    def setUp(self):
        super().setUp()
        self.image = self.engine.make_image("service:1")
        self.unused = self.engine.make_image("unused:1")
        self.engine.start_container("web", self.image)
        self.engine.run_container("job", self.image)
        self.start_over_engine()

    def assert_failure(self, title, message):
        self.assert_result(title, message, outcome="ERRORS")
        self.screen.wait(**no_daemon("DOCKER_HOST override", HOST))
        self.assertIsNone(self.screen.find("list item", "web"))
        self.close()

    def test_stop(self):
        self.engine.stop()
        self.press("Stop web")
        self.assert_failure("Stop Failed", f"Could not stop web: {_UNREACHABLE}")

    def test_removal_of_a_running_container(self):
        self.request_container_removal("web")
        self.engine.stop()
        self.confirm("Delete")
        self.assert_failure("Removal Failed", f"Could not stop web: {_UNREACHABLE}")

    def test_removal_of_a_stopped_container(self):
        self.request_container_removal("job")
        self.engine.stop()
        self.confirm("Delete")
        self.assert_failure("Removal Failed", f"Could not remove job: {_UNREACHABLE}")

    def test_removal_of_an_image(self):
        self.request_image_removal("unused:1")
        self.engine.stop()
        self.confirm("Remove Image")
        self.assert_failure("Image Removal Failed", f"Docker refused to remove {self.unused}: {_UNREACHABLE}")


class DockerToolMissing(DockerCase):
    """Without the tool the pane says so, though an engine runs; with it, the next scan lists what is there."""

    def test_is_found_by_the_next_scan(self):
        self.engine.make_image("service:1")
        tools = self.cage.sample("/usr/local/bin")
        self.start(environment={"DOCKER_HOST": HOST})
        self.show_pane("docker")
        self.screen.wait(**TOOL_NOT_FOUND)
        shutil.copy(CLIENT, tools / "docker")
        self.press("Scan System")
        self.screen.wait("list item", "service:1")
        self.close()


class DockerToolVanished(DockerCase):
    """A tool that vanished since the scan fails every action, and nothing is asked of the engine."""

    def setUp(self):
        super().setUp()
        self.image = self.engine.make_image("service:1")
        self.unused = self.engine.make_image("unused:1")
        self.engine.start_container("web", self.image)
        self.tool = self.cage.sample("/usr/local/bin") / "docker"
        shutil.copy(CLIENT, self.tool)
        self.start(environment={"DOCKER_HOST": HOST})
        self.show_pane("docker")
        self.asked_before = self.engine.changes()

    def assert_failure(self, title):
        self.assert_result(title, "Docker CLI is no longer available.", outcome="ERRORS")
        self.assertEqual(self.asked(), [])
        self.assertEqual(self.engine.containers(), {"web": "running"})
        self.assertEqual(self.engine.images(), {self.image, self.unused})
        self.screen.wait(**TOOL_NOT_FOUND)
        self.assertIn("Docker CLI is no longer available.", self.log())
        self.close()

    def test_stop(self):
        os.unlink(self.tool)
        self.press("Stop web")
        self.assert_failure("Stop Failed")

    def test_removal_of_a_container(self):
        self.request_container_removal("web")
        os.unlink(self.tool)
        self.confirm("Delete")
        self.assert_failure("Removal Failed")

    def test_removal_of_an_image(self):
        self.request_image_removal("unused:1")
        os.unlink(self.tool)
        self.confirm("Remove Image")
        self.assert_failure("Image Removal Failed")
