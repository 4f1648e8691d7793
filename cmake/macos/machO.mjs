// What signature.mjs and stubHelpers.mjs read programs for a Mac with. The structures are those of
// Apple's published headers mach-o/fat.h and mach-o/loader.h.

const FAT_MAGIC = 0xcafebabe;
const MH_MAGIC_64 = 0xfeedfacf;
export const CPU_TYPE_X86_64 = 0x01000007;
export const CPU_TYPE_ARM64 = 0x0100000c;

export function expect(condition, what) {
  if (!condition) throw new Error(what);
}

// The parts of a universal program, or the one that a thin program is: views into `file`.
export function parts(file) {
  if (file.readUInt32BE(0) !== FAT_MAGIC) return [file];
  return Array.from({ length: file.readUInt32BE(4) }, (_, i) => {
    const [offset, size] = [8, 12].map((at) => file.readUInt32BE(8 + 20 * i + at));
    expect(offset + size <= file.length, "a part is cut off");
    return file.subarray(offset, offset + size);
  });
}

export function processorOf(part) {
  expect(part.readUInt32LE(0) === MH_MAGIC_64, "no 64-bit program");
  return part.readUInt32LE(4);
}

// The load commands of a kind: views into `part`.
export function commands(part, kind) {
  const found = [];
  let at = 32;  // size of the header
  for (let left = part.readUInt32LE(16); left > 0; --left) {
    const size = part.readUInt32LE(at + 4);
    if (part.readUInt32LE(at) === kind) found.push(part.subarray(at, at + size));
    at += size;
  }
  return found;
}
