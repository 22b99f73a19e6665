"""Stopping and deleting containers."""

from harness.docker_case import DockerCase


class ContainerCase(DockerCase):
    def setUp(self):
        super().setUp()
        self.image = "service:1"
        self.engine.make_image(self.image)
        self.engine.start_container("neighbour", self.image)


class ContainerStop(ContainerCase):
    """A running container is stopped at once, without a code, and the lists under the result show it."""

    def test_stops_and_leaves_it_there(self):
        container = self.engine.start_container("web", self.image)
        self.start_over_engine()
        self.assertRegex(self.row("web"), "^service:1, Up ")
        self.press("Stop web")
        self.assert_result("Container Stopped", "Stopped web.", outcome="COMPLETE")
        self.assertEqual(self.engine.containers(), {"web": "exited", "neighbour": "running"})
        self.assertEqual(self.asked(), [f"POST /containers/{container}/stop"])
        self.assertRegex(self.row("web"), "^service:1, Exited ")
        self.assertIsNone(self.screen.find("push button", "Stop web"), "a stopped container cannot be stopped")
        self.assertIsNotNone(self.screen.find("push button", "Stop neighbour"))
        self.close()


class RunningContainerRemoval(ContainerCase):
    """A running container is stopped, then removed, never by force."""

    def test_stops_it_first(self):
        container = self.engine.start_container("web", self.image)
        self.start_over_engine()
        self.request_container_removal("web")
        self.display.picture("confirmation-container")
        self.assertEqual(self.asked(), [], "nothing happens before the code is typed")
        self.confirm("Delete")
        self.assert_result("Container Removed", "Removed web.", outcome="COMPLETE")
        self.assertEqual(self.engine.containers(), {"neighbour": "running"})
        self.assertEqual(self.asked(), [f"POST /containers/{container}/stop", f"DELETE /containers/{container}"])
        self.assertIsNone(self.screen.find("list item", "web"))
        self.close()


class StoppedContainerRemoval(ContainerCase):
    """A stopped container is removed without another stop."""

    def test_removes_it(self):
        container = self.engine.run_container("job", self.image)
        self.start_over_engine()
        self.assertIsNone(self.screen.find("push button", "Stop job"))
        self.request_container_removal("job")
        self.confirm("Delete")
        self.assert_result("Container Removed", "Removed job.", outcome="COMPLETE")
        self.assertEqual(self.engine.containers(), {"neighbour": "running"})
        self.assertEqual(self.asked(), [f"DELETE /containers/{container}"])
        self.close()


class FailedStopEndsRemoval(ContainerCase):
    """Where a running container cannot be stopped, its removal is not even tried."""

    def test_container_that_is_gone(self):
        container = self.engine.start_container("web", self.image)
        self.start_over_engine()
        self.request_container_removal("web")
        self.engine.docker("container", "rm", "--force", container)
        before = self.engine.changes()
        self.confirm("Delete")
        self.assert_result("Removal Failed", f"Could not stop web: Error response from daemon: No such container: "
                                             f"{container}", outcome="ERRORS")
        self.assertEqual(self.engine.changes()[len(before):], [f"POST /containers/{container}/stop"])
        self.assertIsNone(self.screen.find("list item", "web"), "the lists were made anew")
        self.close()


class TimedOutStopEndsRemoval(ContainerCase):
    """The same where the container goes on for longer than a stop may take."""

    def test_container_that_will_not_stop(self):
        container = self.engine.start_container("web", self.image, stubborn=True, patience=300)
        self.start_over_engine()
        self.request_container_removal("web")
        self.confirm("Delete")
        # The half a minute that a stop may take.
        self.screen.wait("dialog", "Removal Failed", seconds=60)
        self.assert_result("Removal Failed", "Could not stop web: Command timed out.", outcome="ERRORS")
        self.assertEqual(self.engine.containers(), {"web": "running", "neighbour": "running"})
        self.assertEqual(self.asked(), [f"POST /containers/{container}/stop"])
        self.close()
