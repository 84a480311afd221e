# Where installed copies of the application look for new versions, and whose signature they accept: the
# publisher's settings. A build without them updates only, on Linux, from a development service on the
# same machine.
set(NAVORA_FEED_URL "" CACHE STRING
  "Address of the update feed of published builds: an appcast, over https")
set(NAVORA_UPDATE_PUBLIC_KEY "" CACHE STRING
  "Ed25519 public key, in base64, that updates of published builds must be signed with")
