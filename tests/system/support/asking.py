"""Programs that ask a user at their terminal for names and passwords."""
from .case import SystemTest


class AskingTest(SystemTest):
    def log_in(self, session, password, name, domain=None, times=1):
        """Answers the question that comes for the so many-th time."""
        session.wait_for(lambda lines: lines and lines[-1] == "Name:" and
                         sum("Name:" in line for line in lines) == times)
        session.type(name + "\n")
        session.wait_for(lambda lines: lines and lines[-1] == "Password:")
        session.type(password + "\n")
        if domain is not None:
            session.wait_for(lambda lines: lines and lines[-1] == "Domain:")
            session.type(domain + "\n")
