// The entry points of message sends. Each keeps the argument registers, asks the runtime for the
// method, and jumps to it, so that the method sees exactly what the sender passed. A message to nil
// returns zero.

#if defined(__x86_64__)

// Six argument registers, the number of vector registers of a variadic call, and eight vector
// registers; the frame keeps the stack aligned.
.macro navora_save_arguments
  pushq %rbp
  .cfi_def_cfa_offset 16
  .cfi_offset %rbp, -16
  movq %rsp, %rbp
  .cfi_def_cfa_register %rbp
  subq $192, %rsp
  movq %rdi, 0(%rsp)
  movq %rsi, 8(%rsp)
  movq %rdx, 16(%rsp)
  movq %rcx, 24(%rsp)
  movq %r8, 32(%rsp)
  movq %r9, 40(%rsp)
  movq %rax, 48(%rsp)
  movups %xmm0, 64(%rsp)
  movups %xmm1, 80(%rsp)
  movups %xmm2, 96(%rsp)
  movups %xmm3, 112(%rsp)
  movups %xmm4, 128(%rsp)
  movups %xmm5, 144(%rsp)
  movups %xmm6, 160(%rsp)
  movups %xmm7, 176(%rsp)
.endm

.macro navora_restore_arguments
  movq 0(%rsp), %rdi
  movq 8(%rsp), %rsi
  movq 16(%rsp), %rdx
  movq 24(%rsp), %rcx
  movq 32(%rsp), %r8
  movq 40(%rsp), %r9
  movq 48(%rsp), %rax
  movups 64(%rsp), %xmm0
  movups 80(%rsp), %xmm1
  movups 96(%rsp), %xmm2
  movups 112(%rsp), %xmm3
  movups 128(%rsp), %xmm4
  movups 144(%rsp), %xmm5
  movups 160(%rsp), %xmm6
  movups 176(%rsp), %xmm7
  movq %rbp, %rsp
  popq %rbp
  .cfi_def_cfa %rsp, 8
.endm

.macro navora_function name
  .globl \name
  .type \name, @function
\name:
  .cfi_startproc
.endm

.macro navora_end name
  .cfi_endproc
  .size \name, . - \name
.endm

// \receiver and \selector: the registers of the first two arguments of the lookup.
.macro navora_look_up function, receiver, selector
  navora_save_arguments
  .ifnc \selector, %rsi
  movq \receiver, %rdi
  movq \selector, %rsi
  .endif
  call \function@PLT
  movq %rax, %r11
  navora_restore_arguments
.endm

.text
navora_function objc_msgSend
  testq %rdi, %rdi
  je 1f
  navora_look_up navora_objc_method, %rdi, %rsi
  jmp *%r11
1:
  xorl %eax, %eax
  xorl %edx, %edx
  xorps %xmm0, %xmm0
  xorps %xmm1, %xmm1
  ret
navora_end objc_msgSend

// Returns a long double, on the x87 stack.
navora_function objc_msgSend_fpret
  testq %rdi, %rdi
  je 1f
  navora_look_up navora_objc_method, %rdi, %rsi
  jmp *%r11
1:
  fldz
  ret
navora_end objc_msgSend_fpret

// The first argument is the address of the result. A sender clears it before a message to nil.
navora_function objc_msgSend_stret
  testq %rsi, %rsi
  je 1f
  navora_look_up navora_objc_method, %rsi, %rdx
  jmp *%r11
1:
  movq %rdi, %rax
  ret
navora_end objc_msgSend_stret

// The method gets the receiver in place of the structure with it.
navora_function objc_msgSendSuper2
  navora_look_up navora_objc_super_method, %rdi, %rsi
  movq (%rdi), %rdi
  jmp *%r11
navora_end objc_msgSendSuper2

navora_function objc_msgSendSuper2_stret
  navora_look_up navora_objc_super_method, %rsi, %rdx
  movq (%rsi), %rsi
  jmp *%r11
navora_end objc_msgSendSuper2_stret

#elif defined(__aarch64__)

// x8 holds the address of a structure that is returned in memory, so no entry points of their own
// are needed for structures.
.macro navora_look_up function
  stp x29, x30, [sp, #-224]!
  .cfi_def_cfa_offset 224
  .cfi_offset x29, -224
  .cfi_offset x30, -216
  mov x29, sp
  stp x0, x1, [sp, #16]
  stp x2, x3, [sp, #32]
  stp x4, x5, [sp, #48]
  stp x6, x7, [sp, #64]
  str x8, [sp, #80]
  stp q0, q1, [sp, #96]
  stp q2, q3, [sp, #128]
  stp q4, q5, [sp, #160]
  stp q6, q7, [sp, #192]
  bl \function
  mov x17, x0
  ldp x0, x1, [sp, #16]
  ldp x2, x3, [sp, #32]
  ldp x4, x5, [sp, #48]
  ldp x6, x7, [sp, #64]
  ldr x8, [sp, #80]
  ldp q0, q1, [sp, #96]
  ldp q2, q3, [sp, #128]
  ldp q4, q5, [sp, #160]
  ldp q6, q7, [sp, #192]
  ldp x29, x30, [sp], #224
  .cfi_def_cfa sp, 0
  .cfi_restore x29
  .cfi_restore x30
.endm

.text
.globl objc_msgSend
.type objc_msgSend, %function
objc_msgSend:
  .cfi_startproc
  cbz x0, 1f
  navora_look_up navora_objc_method
  br x17
1:
  mov x1, #0
  movi d0, #0
  movi d1, #0
  movi d2, #0
  movi d3, #0
  ret
  .cfi_endproc
.size objc_msgSend, . - objc_msgSend

.globl objc_msgSendSuper2
.type objc_msgSendSuper2, %function
objc_msgSendSuper2:
  .cfi_startproc
  navora_look_up navora_objc_super_method
  ldr x0, [x0]
  br x17
  .cfi_endproc
.size objc_msgSendSuper2, . - objc_msgSendSuper2

#else
#error "No message sends for this processor"
#endif

// What every class names as its cache. The runtime keeps none, and the compiler declares the name
// itself wherever it compiles a class.
.bss
.globl _objc_empty_cache
.balign 8
_objc_empty_cache:
  .zero 8

.section .note.GNU-stack, "", %progbits
