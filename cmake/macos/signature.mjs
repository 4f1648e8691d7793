// Verifies the ad-hoc signature of a program's arm64 part, without which the kernel ends it at once:
// every page must have the hash that the signature states. The structures are those of Apple's published
// headers mach-o/loader.h and kern/cs_blobs.h.
//
//   node signature.mjs PROGRAM...

import { createHash } from "node:crypto";
import { readFileSync } from "node:fs";
import { commands, CPU_TYPE_ARM64, expect, parts, processorOf } from "./machO.mjs";

const LC_CODE_SIGNATURE = 0x1d;
const CSMAGIC_EMBEDDED_SIGNATURE = 0xfade0cc0;
const CSMAGIC_CODEDIRECTORY = 0xfade0c02;
const CS_ADHOC = 0x2;
const CS_HASHTYPE_SHA256 = 2;

function codeDirectory(signature) {
  expect(signature.readUInt32BE(0) === CSMAGIC_EMBEDDED_SIGNATURE, "no signature");
  for (let i = 0; i < signature.readUInt32BE(8); ++i) {
    const blob = signature.subarray(signature.readUInt32BE(16 + 8 * i));
    if (blob.readUInt32BE(0) === CSMAGIC_CODEDIRECTORY) return blob;
  }
  throw new Error("no code directory");
}

// Returns the number of pages.
function verify(name) {
  const part = parts(readFileSync(name)).find((each) => processorOf(each) === CPU_TYPE_ARM64);
  expect(part !== undefined, "no arm64 part");
  const [command] = commands(part, LC_CODE_SIGNATURE);
  expect(command !== undefined, "not signed");
  const [offset, size] = [8, 12].map((at) => command.readUInt32LE(at));
  expect(offset + size <= part.length, "the signature is cut off");
  const directory = codeDirectory(part.subarray(offset, offset + size));
  const [flags, hashes, pages, limit] = [12, 16, 28, 32].map((at) => directory.readUInt32BE(at));
  const pageSize = 1 << directory[39];
  expect(flags & CS_ADHOC, "not signed ad hoc");
  expect(directory[37] === CS_HASHTYPE_SHA256, "no SHA-256 hashes");
  expect(limit === offset, "not everything before the signature is signed");
  expect(pages === Math.ceil(limit / pageSize), "not as many hashes as pages");
  for (let page = 0; page < pages; ++page) {
    const bytes = part.subarray(page * pageSize, Math.min((page + 1) * pageSize, limit));
    const hash = directory.subarray(hashes + 32 * page, hashes + 32 * (page + 1));
    expect(createHash("sha256").update(bytes).digest().equals(hash), `page ${page} is not what was signed`);
  }
  return pages;
}

for (const name of process.argv.slice(2)) {
  try {
    console.log(`${name}: the hashes of ${verify(name)} pages are valid`);
  } catch (error) {
    console.error(`${name}: ${error.message}`);
    process.exitCode = 1;
  }
}
