# To be sourced: where this machine's own packages come from.

# The archive that apt is set up with, which has the other releases too.
debian_mirror() {
  apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | grep -m 1 '/debian/$'
}
